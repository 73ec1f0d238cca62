// The named editing commands.
(function () {
  'use strict';
  const {body, isFrameset, inert, selection, chosenField, enclosing} = page;
  const {textBefore, placeBehind} = bodyText;
  const {insert, insertParagraph} = insertion;
  const steps = undoHistory.of;

  const FRAGMENTS = {
    insertinputtext: '<input type="text">',
    inserttextarea: '<textarea></textarea>',
    insertinputradio: '<input type="radio">',
    insertinputcheckbox: '<input type="checkbox">',
    insertbutton: '<button type="button">\u6309\u94ae</button>',
  };

  function command(name, value) {
    const lower = name.toLowerCase();
    if (lower === 'undo')
      return steps().undo();
    if (lower === 'redo')
      return steps().redo();
    if (isFrameset(body()))
      return false;
    const chosen = selection();
    if (Object.prototype.hasOwnProperty.call(FRAGMENTS, lower))
      return insert(FRAGMENTS[lower], {});
    if (lower === 'insertparagraph')
      return insertParagraph();
    if (lower === 'unlink' && chosen.isCollapsed)
      return unlinkAtCaret(chosen);
    if (lower === 'unselect') {
      const field = chosenField();
      if (field)
        field.setSelectionRange(field.selectionEnd, field.selectionEnd);
      else
        chosen.collapseToEnd();
      steps().goOn();
      return true;
    }
    // A command within another is refused by the engine, and ours is within that of cutting.
    if (lower === 'cut')
      return document.execCommand('copy') && page.deleteSelection();
    if (lower === 'delete')
      return chosen.isCollapsed ? document.execCommand('forwardDelete') : page.deleteSelection();
    document.execCommand('styleWithCSS', false, false);
    if (lower === 'fontname')
      return setFont(chosen, value);
    return /list$|dent$/.test(lower) ? shapeBlocks(chosen, lower) : document.execCommand(lower, false, value);
  }

  // Lists and indents. The engine forgets where in the paragraph the caret stood, and leaves lists inside of
  // paragraphs, which no parser does.
  function shapeBlocks(chosen, name) {
    const caret = chosen.isCollapsed && chosen.anchorNode.nodeType === Node.TEXT_NODE ?
        textBefore(chosen.anchorNode, chosen.anchorOffset) : -1;
    const done = document.execCommand(name);
    const ends = [chosen.anchorNode, chosen.anchorOffset, chosen.focusNode, chosen.focusOffset];
    body().querySelectorAll('p > ul, p > ol').forEach(takeOut);
    const place = caret < 0 ? null : placeBehind(caret);
    if (place)
      chosen.collapse(...place);
    else if (ends[0].isConnected && ends[2].isConnected)
      chosen.setBaseAndExtent(...ends);
    // The lines of a list that ends are paragraphs.
    if (chosen.anchorNode.nodeType === Node.TEXT_NODE && chosen.anchorNode.parentElement === body())
      document.execCommand('formatBlock', false, 'p');
    return done;
  }

  // Parts a paragraph around the list inside of it. What the paragraph said of its text stays around the list.
  function takeOut(list) {
    const before = list.parentElement;
    const behind = before.cloneNode(false);
    while (list.nextSibling)
      behind.append(list.nextSibling);
    const around = document.createElement('div');
    Array.from(before.attributes, (a) => around.setAttributeNode(a.cloneNode()));
    before.after(list, behind);
    if (around.attributes.length > 0) {
      list.replaceWith(around);
      around.append(list);
    }
    for (const paragraph of [before, behind]) {
      if (!paragraph.hasChildNodes())
        paragraph.remove();
    }
  }

  // Some of the names that are offered are no names to the engine. They stand in the page all the same.
  function setFont(chosen, name) {
    if (window.CSS.supports('font-family', name))
      return document.execCommand('fontName', false, name);
    // What is typed next takes a name that the engine knows.
    if (chosen.isCollapsed)
      return document.execCommand('fontName', false, inert(name).textContent.replace(/\s/g, ' '));
    const done = document.execCommand('fontName', false, 'vorel-font');
    body().querySelectorAll('font[face="vorel-font"]').forEach((element) => element.setAttribute('face', name));
    return done;
  }

  // The engine takes links off what is selected alone.
  function unlinkAtCaret(chosen) {
    const link = enclosing('a[href]');
    if (!link)
      return false;
    const {anchorNode, anchorOffset} = chosen;
    chosen.selectAllChildren(link);
    const done = document.execCommand('unlink');
    if (anchorNode.isConnected)
      chosen.collapse(anchorNode, anchorOffset);
    return done;
  }

  function createLink(address) {
    if (isFrameset(body()))
      return false;
    const chosen = selection();
    const link = enclosing('a[href]');
    if (link && chosen.isCollapsed) {
      link.setAttribute('href', address);
      return true;
    }
    if (!chosen.isCollapsed)
      return document.execCommand('createLink', false, address);
    const holder = inert('');
    const fresh = holder.ownerDocument.createElement('a');
    fresh.setAttribute('href', address);
    fresh.textContent = address;
    return insert(fresh.outerHTML, {});
  }

  return {command: command, shapeBlocks: shapeBlocks, createLink: createLink};
})()
