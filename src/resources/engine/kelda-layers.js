// Page runtime of the editor: layers. A layer is a DIV, or any element
// whose own style hides it. Edit mode marks them; the Visibility pane shows
// and hides them while the user edits; the save puts each one back as the
// page had it.
(function () {
  'use strict';
  const K = window.__kelda;
  if (!K || K.layers) return;

  // Each layer's style attribute as it stood when edit mode marked it (null
  // for none). Held beside the elements, not in the page, so nothing of it
  // can reach the file.
  const originals = new WeakMap();

  // The visibility the style attribute itself says, as written.
  function ownVisibility(e) {
    const m = /(?:^|;)\s*visibility\s*:\s*([^;]*)/i.exec(e.getAttribute('style') || '');
    return m ? m[1].trim() : '';
  }
  // A style text as the engine reads it, apart from its visibility.
  function withoutVisibility(d, text) {
    const probe = d.createElement('div');
    if (text !== null) probe.setAttribute('style', text);
    probe.style.removeProperty('visibility');
    return probe.style.cssText;
  }
  function setVisibility(e, value) {
    const h = K.id(e);
    if (value) K.elm.styleSet(h, 'visibility', value); else K.elm.styleRemove(h, 'visibility');
  }

  K.layers = {
    // vismark on every layer, no_visibility beside it on one its style
    // doesn't hide. The count of layers.
    mark(path) {
      const list = K.docAt(path).getElementsByTagName('*');
      let n = 0;
      for (let i = 0; i < list.length; i++) {
        const e = list[i], hidden = ownVisibility(e).toLowerCase() === 'hidden';
        if (!hidden && e.tagName.toUpperCase() !== 'DIV') continue;
        e.setAttribute('vismark', 'true');
        if (!hidden) e.setAttribute('no_visibility', 'true');
        originals.set(e, e.getAttribute('style'));
        n++;
      }
      return n;
    },
    // The layers as they stand now, in the page's order.
    list(path) {
      return Array.prototype.map.call(K.docAt(path).querySelectorAll('[vismark="true"]'), e => ({
        h: K.id(e), tag: e.tagName.toUpperCase(), id: e.id, visibility: ownVisibility(e) }));
    },
    // [[handle, visibility], ...]; an empty visibility takes it off the style.
    set(path, pairs) {
      for (const [h, value] of pairs) setVisibility(K.el(h), value);
      return true;
    },
    // Every layer marked by mark() gets its visibility back. When nothing
    // else of its style changed, the style attribute's own text comes back
    // too, so the page's bytes stay as they were; the marks go. Layers that
    // came in later (a paste) keep their marks for the save's own rule.
    restore(path) {
      const d = K.docAt(path);
      let n = 0;
      for (const e of d.querySelectorAll('[vismark="true"]')) {
        if (!originals.has(e)) continue;
        const before = originals.get(e), now = e.getAttribute('style');
        if (withoutVisibility(d, before) === withoutVisibility(d, now)) {
          if (before === null) e.removeAttribute('style'); else e.setAttribute('style', before);
        } else {
          const probe = d.createElement('div');
          if (before !== null) probe.setAttribute('style', before);
          setVisibility(e, ownVisibility(probe));
        }
        e.removeAttribute('vismark');
        e.removeAttribute('no_visibility');
        n++;
      }
      return n;
    }
  };
})();
