// What the engine does otherwise with what a person types.
(function () {
  'use strict';
  const {chosenField, isLargeAndChosen, emptyChosen} = page;
  // The engine leads out of a link what is typed at its end. Help that floats over a text is a link to it only
  // with an address.
  const HELP = 'a:not([href])';
  let left = null;

  function helpEndingAt(node, offset) {
    const before = node.nodeType === Node.ELEMENT_NODE ? node.childNodes[offset - 1] : null;
    if (before && before.nodeType === Node.ELEMENT_NODE && before.matches(HELP))
      return before;
    const help = (node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement).closest(HELP);
    if (!help)
      return null;
    const rest = document.createRange();
    rest.setStart(node, offset);
    rest.setEndAfter(help);
    return rest.toString() === '' ? help : null;
  }

  // A caret that stands behind a button is drawn in it, and what is typed there would be its label. Only one that
  // was put into the label stands in it.
  function buttonBefore(node, offset) {
    const before = node.nodeType === Node.ELEMENT_NODE ? node.childNodes[offset - 1] :
        offset === 0 ? node.previousSibling : null;
    return before && before.localName === 'button' ? before : null;
  }

  function leaveButton(event) {
    const chosen = window.getSelection();
    if (chosen.rangeCount === 0 || !chosen.isCollapsed || chosen.anchorNode.nodeType !== Node.TEXT_NODE ||
        chosen.anchorOffset !== chosen.anchorNode.length)
      return;
    const button = chosen.anchorNode.parentElement.closest('button');
    const isOutside = event.type === 'keyup' ? event.key === 'End' : button && !button.contains(event.target);
    if (button && isOutside && button.parentNode)
      chosen.collapse(button.parentNode, Array.from(button.parentNode.childNodes).indexOf(button) + 1);
  }

  // Directly behind a table an input method loses its place, and text would stand outside of every paragraph.
  function openLine(chosen) {
    const {anchorNode, anchorOffset} = chosen;
    const before = anchorNode.nodeType === Node.ELEMENT_NODE && anchorNode.childNodes[anchorOffset - 1];
    const next = before && before.nextSibling;
    if (!before || !/^(table|hr)$/.test(before.localName) || (next && next.nodeType === Node.TEXT_NODE))
      return;
    undoHistory.of().leadIn(() => {
      const line = document.createElement('p');
      line.append(document.createElement('br'));
      before.after(line);
      chosen.collapse(line, 0);
    });
  }

  // What was switched on or off at the caret holds behind a line's end as well: the engine goes by the text before it.
  const SWITCHES = {
    bold: (style) => parseInt(style.fontWeight, 10) >= 600,
    italic: (style) => style.fontStyle === 'italic',
    underline: (style) => style.textDecorationLine.includes('underline'),
  };
  let switched = [];

  function lookAtSwitches() {
    const chosen = window.getSelection();
    if (chosen.rangeCount === 0 || !chosen.isCollapsed)
      return [];
    const node = chosen.anchorNode;
    const around = [];
    for (let e = node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement; e; e = e.parentElement)
      around.push(getComputedStyle(e));
    return Object.keys(SWITCHES).map((name) => [name, document.queryCommandState(name)]).filter(([name, isOn]) => {
      const isInherited = name !== 'underline';
      return isOn !== (isInherited ? around.slice(0, 1) : around).some(SWITCHES[name]);
    });
  }

  function keepSwitches() {
    for (const [name, isOn] of switched) {
      if (document.queryCommandState(name) !== isOn)
        document.execCommand(name);
    }
    switched = [];
  }

  function look() {
    const chosen = window.getSelection();
    if (!chosenField() && isLargeAndChosen())
      undoHistory.of().leadIn(emptyChosen);
    if (chosen.rangeCount > 0 && chosen.isCollapsed)
      openLine(chosen);
    const {anchorNode, anchorOffset} = chosen;
    const help = chosen.rangeCount > 0 && chosen.isCollapsed ?
        helpEndingAt(anchorNode, anchorOffset) || buttonBefore(anchorNode, anchorOffset) : null;
    left = help && help.textContent !== '' ? {help: help, length: help.textContent.length} : null;
  }

  function leadOut() {
    const {help, length} = left || {};
    left = null;
    const chosen = window.getSelection();
    const text = chosen.anchorNode;
    const grown = help ? help.textContent.length - length : 0;
    if (grown <= 0 || !help.contains(text) || text.nodeType !== Node.TEXT_NODE || text.length < grown ||
        chosen.anchorOffset !== text.length)
      return;
    const typed = document.createTextNode(text.data.slice(-grown));
    text.deleteData(text.length - grown, grown);
    help.after(typed);
    chosen.collapse(typed, grown);
  }

  // A page is saved with what stands in its fields, as a person sees it.
  function keepField(field) {
    if (field.localName === 'textarea') {
      field.defaultValue = field.value;
    } else if (field.localName === 'input') {
      if (field.matches('[type=checkbox], [type=radio]'))
        document.querySelectorAll('input').forEach((each) => each.toggleAttribute('checked', each.checked));
      else if (!field.matches('[type=file], [type=password]'))
        field.setAttribute('value', field.value);
    } else if (field.localName === 'select') {
      Array.from(field.options, (option) => option.toggleAttribute('selected', option.selected));
    }
  }

  // Before the history hears of it, which takes all that is done here for what was typed.
  function listen() {
    const isEdited = () => document.designMode === 'on';
    for (const name of ['mouseup', 'keyup'])
      window.addEventListener(name, (event) => isEdited() && leaveButton(event), true);
    window.addEventListener('compositionstart', () => isEdited() && look(), true);
    window.addEventListener('beforeinput', (event) => {
      if (isEdited() && !event.isComposing && event.inputType.startsWith('insert') &&
          event.inputType !== 'insertFromDrop')
        look();
      switched = event.inputType === 'insertParagraph' && isEdited() ? lookAtSwitches() : [];
    }, true);
    window.addEventListener('input', (event) => {
      if (isEdited() && !event.isComposing) {
        leadOut();
        keepSwitches();
        // What is ticked or chosen is told of by nothing before.
        if (event instanceof InputEvent)
          keepField(event.target);
        else
          undoHistory.of().change(() => keepField(event.target));
      }
    }, true);
    window.addEventListener('compositionend', (event) => {
      if (isEdited()) {
        leadOut();
        keepField(event.target);
      }
    }, true);
  }

  return {listen: listen};
})()
