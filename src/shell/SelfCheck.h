#pragma once

#include <QStringList>

class frmVindrell;

// What `keldacms --self-check` proves of an installed program: the string
// table is in the binary, the main window shows, and the page engine with
// the program's profile renders a page. Prints what failed, or one line
// that all is well, and gives the exit code.
class SelfCheck
{
public:
    static int Run(frmVindrell &window);

private:
    static bool EngineRenders();
    static QStringList Problems(frmVindrell &window);
};
