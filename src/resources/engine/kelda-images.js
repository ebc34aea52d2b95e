// Pictures in a page under edit: put in at a point, picked for a command,
// resized and moved with the mouse. The engine gives an editable page no
// handles of its own for this, so they are made here: the right or the
// bottom edge of a picture (a band of EDGE pixels) takes a drag that
// resizes it; a positioned picture dragged anywhere else moves. A drag at
// the corner keeps the picture's proportion, unless Shift is held; an edge
// changes that side alone. The new size is written to the picture's width
// and height and to its style, as the engine's own resize did, and the
// editor hears of it by an 'imgresized' (or 'imgmoved') event.
(function () {
  'use strict';
  const K = window.__kelda;
  if (!K || K.img) return;
  const EDGE = 6;

  // In design mode the engine calls every element editable, also a
  // picture in the sealed output of server script, which is no picture of
  // the page's and must keep its size.
  function editable(img) {
    return !!img && img.tagName === 'IMG' && img.isContentEditable && !img.closest('[contenteditable="false" i]');
  }
  function edgeAt(img, x, y) {
    const r = img.getBoundingClientRect();
    const right = x >= r.right - EDGE && x <= r.right + 1 && y >= r.top && y <= r.bottom + 1;
    const bottom = y >= r.bottom - EDGE && y <= r.bottom + 1 && x >= r.left && x <= r.right + 1;
    return right && bottom ? 'corner' : right ? 'right' : bottom ? 'bottom' : '';
  }
  function positioned(img) {
    return (img.ownerDocument.defaultView || window).getComputedStyle(img).position === 'absolute';
  }
  // The pointer's shape over the page while it is over an edge: the
  // editor's own style element, never part of the page's file.
  function cursor(d, shape) {
    if (shape) K.look.styleFor(d, '__kelda_imgcursor').textContent = 'html,html *{cursor:' + shape + '!important}';
    else K.look.drop(d, '__kelda_imgcursor');
  }
  const SHAPES = { corner: 'nwse-resize', right: 'ew-resize', bottom: 'ns-resize', move: 'move' };

  function framePath() {
    const path = [];
    let w = window;
    while (w !== w.parent) {
      const p = w.parent;
      let i = 0; for (; i < p.frames.length; i++) if (p.frames[i] === w) break;
      path.unshift(i); w = p;
    }
    return path;
  }
  function post(type, img) {
    let t = null;
    try { t = window.top.__kelda; } catch (e) { return; }
    if (!t) return;
    t.post({ type: type, frame: framePath(), element: t.id(img), x: img.offsetWidth, y: img.offsetHeight,
             button: 0, keyCode: 0, key: '', shift: false, ctrl: false, alt: false, cancelled: false });
  }

  let drag = null;
  document.addEventListener('mousemove', function (ev) {
    if (drag) {
      ev.preventDefault();
      const dx = ev.clientX - drag.x, dy = ev.clientY - drag.y, img = drag.img;
      if (drag.kind === 'move') {
        img.style.left = (drag.left + dx) + 'px';
        img.style.top = (drag.top + dy) + 'px';
        return;
      }
      let w = drag.w, h = drag.h;
      if (drag.kind !== 'bottom') w = Math.max(1, drag.w + dx);
      if (drag.kind !== 'right') h = Math.max(1, drag.h + dy);
      if (drag.kind === 'corner' && !ev.shiftKey) h = Math.max(1, Math.round(w * drag.h / drag.w));
      img.style.width = w + 'px';
      img.style.height = h + 'px';
      return;
    }
    const img = ev.target;
    if (!editable(img)) { cursor(document, ''); return; }
    const edge = edgeAt(img, ev.clientX, ev.clientY);
    cursor(document, SHAPES[edge || (positioned(img) ? 'move' : '')] || '');
  }, true);

  document.addEventListener('mousedown', function (ev) {
    const img = ev.target;
    if (ev.button !== 0 || !editable(img)) return;
    const edge = edgeAt(img, ev.clientX, ev.clientY);
    if (!edge && !positioned(img)) return;
    ev.preventDefault();
    drag = { img: img, kind: edge || 'move', x: ev.clientX, y: ev.clientY, w: img.offsetWidth, h: img.offsetHeight,
             left: img.offsetLeft, top: img.offsetTop };
  }, true);

  document.addEventListener('mouseup', function () {
    if (!drag) return;
    const d = drag; drag = null;
    cursor(document, '');
    if (d.kind === 'move') { post('imgmoved', d.img); return; }
    const w = d.img.offsetWidth, h = d.img.offsetHeight;
    if (w === d.w && h === d.h) return;
    d.img.setAttribute('width', String(w));
    d.img.setAttribute('height', String(h));
    post('imgresized', d.img);
  }, true);

  K.img = {
    // Puts the caret at the point of the frame; false where the page can't
    // be edited.
    caretAt(path, x, y) {
      const d = K.docAt(path), w = d.defaultView || window;
      const r = d.caretRangeFromPoint(x, y);
      if (!r) return false;
      const node = r.startContainer.nodeType === 1 ? r.startContainer : r.startContainer.parentElement;
      if (!node || !(node.isContentEditable || d.designMode === 'on')) return false;
      const s = w.getSelection();
      s.removeAllRanges(); s.addRange(r);
      return true;
    },
    // The engine's own insertion at the selection, with a placeholder
    // address by which the new picture is found: its handle, 0 when the
    // engine put nothing in.
    insert(path, placeholder) {
      const d = K.docAt(path);
      d.execCommand('insertImage', false, placeholder);
      for (const img of d.getElementsByTagName('IMG'))
        if (img.getAttribute('src') === placeholder) return K.id(img);
      return 0;
    },
    // The picture alone as the selection, for the commands that act on it.
    select(h) {
      const img = K.el(h), d = img.ownerDocument, s = (d.defaultView || window).getSelection();
      const r = d.createRange();
      r.selectNode(img);
      s.removeAllRanges(); s.addRange(r);
      return true;
    },
    // The size the picture has on screen and the size of its file.
    sizes(h) {
      const img = K.el(h);
      return { width: img.offsetWidth, height: img.offsetHeight,
               naturalWidth: img.naturalWidth, naturalHeight: img.naturalHeight, complete: img.complete };
    }
  };
})();
