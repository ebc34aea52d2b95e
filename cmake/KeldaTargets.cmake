# Helpers that keep the per-folder CMakeLists short.
#
# kelda_core_sources(file...)  adds files to the GUI-free core library, which
#                              links Qt Core/Network and libcurl only and is
#                              tested without a display.
# kelda_gui_sources(file...)   adds files to the library of widgets and the
#                              page engine.
# Both take paths relative to the calling folder.

function(kelda_core_sources)
  foreach(f IN LISTS ARGN)
    target_sources(kelda_core PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${f})
  endforeach()
endfunction()

function(kelda_gui_sources)
  foreach(f IN LISTS ARGN)
    target_sources(kelda_gui PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${f})
  endforeach()
endfunction()
