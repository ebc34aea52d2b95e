// Page runtime of the editor: the text of the selection for the spell
// check, as the pieces of its text nodes, and the corrected pieces put back
// into the same nodes, so that the markup around the words stays as it was.
(function () {
  'use strict';
  const K = window.__kelda;
  if (!K || K.spelling) return;

  const SKIPPED = 'script, style, noscript, [contenteditable="false" i]';
  let held = null;

  function isLine(e) {
    if (e.tagName === 'BR') return true;
    const display = e.ownerDocument.defaultView.getComputedStyle(e).display;
    return display !== 'inline' && display !== 'inline-block' && display !== 'contents' && display !== 'none';
  }

  function langOf(d, node) {
    const e = node && (node.nodeType === 1 ? node : node.parentElement);
    const marked = e ? e.closest('[lang]') : null;
    return marked ? marked.getAttribute('lang') : (d.documentElement.getAttribute('lang') || '');
  }

  K.spelling = {
    // { lang, pieces: [{ text, lineBefore }] }, or no pieces for a bare caret.
    pieces: function (path) {
      const d = K.docAt(path), s = d.defaultView.getSelection();
      held = null;
      if (!s || s.rangeCount === 0 || s.isCollapsed) return { lang: langOf(d, d.body), pieces: [] };
      const r = s.getRangeAt(0), root = r.commonAncestorContainer;
      const walk = d.createTreeWalker(root.nodeType === 3 ? root.parentNode : root,
                                      NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_TEXT);
      const nodes = [], pieces = [];
      let line = false;
      for (let n = walk.currentNode; n; n = walk.nextNode()) {
        if (n.nodeType === 1) { if (isLine(n)) line = true; continue; }
        if (!r.intersectsNode(n) || n.parentElement.closest(SKIPPED)) continue;
        const start = n === r.startContainer ? r.startOffset : 0;
        const end = n === r.endContainer ? r.endOffset : n.data.length;
        if (end <= start) continue;
        nodes.push({ node: n, start: start, end: end });
        pieces.push({ text: n.data.slice(start, end), lineBefore: line });
        line = false;
      }
      held = { doc: d, nodes: nodes };
      return { lang: langOf(d, r.startContainer), pieces: pieces };
    },

    // The texts in the order pieces() gave them; the selection then spans
    // the corrected text.
    apply: function (path, texts) {
      const d = K.docAt(path);
      if (!held || held.doc !== d || texts.length !== held.nodes.length) throw new Error('The selection changed');
      held.nodes.forEach(function (p, i) {
        if (texts[i] !== p.node.data.slice(p.start, p.end))
          p.node.data = p.node.data.slice(0, p.start) + texts[i] + p.node.data.slice(p.end);
        p.end = p.start + texts[i].length;
      });
      const first = held.nodes[0], last = held.nodes[held.nodes.length - 1];
      if (first) {
        const r = d.createRange();
        r.setStart(first.node, first.start); r.setEnd(last.node, last.end);
        const s = d.defaultView.getSelection();
        s.removeAllRanges(); s.addRange(r);
      }
      held = null;
      return true;
    }
  };
})();
