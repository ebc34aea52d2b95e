// Page runtime of the editor: applets. The engine runs no applets, so while
// a page is edited each one is drawn as a box of its own size with its
// label, where the user can see it and right-click it. The look is a style
// element of the editor's own (never saved) and a label mark that the save
// takes off.
(function () {
  'use strict';
  const K = window.__kelda;
  if (!K || K.applets) return;

  const MARK = 'keldalabel';
  const BASE = 'applet{display:inline-block;box-sizing:border-box;min-width:24px;min-height:16px;' +
    'border:1px dashed #707070;background:#e4e4e4;color:#303030;font:11px sans-serif;text-align:center;' +
    'overflow:hidden;white-space:nowrap;vertical-align:bottom}' +
    'applet::before{content:attr(' + MARK + ')}';

  function paramsOf(e) {
    return Array.prototype.filter.call(e.children, c => c.tagName === 'PARAM');
  }
  // The button's text, or for another applet its class.
  function label(e) {
    for (const p of paramsOf(e))
      if ((p.getAttribute('name') || '').toLowerCase() === 'text') return p.getAttribute('value') || '';
    return e.getAttribute('code') || 'APPLET';
  }
  // A size in pixels, or in percent; anything else leaves the box its least.
  function length(v) {
    const t = String(v).trim();
    if (/^\d+(\.\d+)?$/.test(t)) return t + 'px';
    return /^\d+(\.\d+)?%$/.test(t) ? t : null;
  }
  function quoted(v) { return '"' + String(v).replace(/["\\]/g, '\\$&') + '"'; }

  K.applets = {
    // One rule per size met, so the boxes need nothing in the elements
    // themselves but their label. Called again after an applet changed.
    show(path) {
      const d = K.docAt(path), list = d.getElementsByTagName('applet'), rules = [BASE], seen = new Set();
      for (const e of list) {
        e.setAttribute(MARK, label(e));
        for (const side of ['width', 'height']) {
          const v = e.getAttribute(side), len = v === null ? null : length(v);
          if (len && !seen.has(side + v)) {
            seen.add(side + v);
            rules.push('applet[' + side + '=' + quoted(v) + ']{' + side + ':' + len + '}');
          }
        }
      }
      K.look.styleFor(d, '__kelda_applets').textContent = rules.join('\n');
      return list.length;
    },
    hide(path) {
      const d = K.docAt(path);
      K.look.drop(d, '__kelda_applets');
      for (const e of d.querySelectorAll('applet[' + MARK + ']')) e.removeAttribute(MARK);
      return true;
    },
    // The PARAM children and the attributes, in the page's order.
    read(h) {
      const e = K.el(h);
      return {
        params: paramsOf(e).map(p => ({ name: p.getAttribute('name') || '', value: p.getAttribute('value') || '',
                                        valuetype: p.getAttribute('valuetype') || '' })),
        attributes: Array.prototype.map.call(e.attributes, a => [a.name, a.value])
      };
    }
  };
})();
