// What was done to the page that is being edited, step by step, so that it is undone and redone: what a person
// types, the engine's commands, and what the program changes by itself. The engine's own history knows nothing
// of the last, so it is not used at all: its keys and commands come here. A step is the list of changes that
// the engine reports of the tree, which holds whoever made them.
(function () {
  'use strict';
  const MOST_STEPS = 1000;
  // A step that replaced much of the page holds the old page.
  const MOST_LARGE_STEPS = 20;
  const LARGE = 200;
  // What is typed without a rest is undone at once.
  const REST_MILLISECONDS = 1000;
  const TYPED = /^(insertText|insertCompositionText|insertFromComposition|delete(CompositionText|ByComposition))$/;
  const ERASED = /^deleteContent(Backward|Forward)$/;

  function place() {
    const s = window.getSelection();
    return s.rangeCount === 0 ? null :
        {anchor: s.anchorNode, anchorOffset: s.anchorOffset, focus: s.focusNode, focusOffset: s.focusOffset};
  }

  function isSamePlace(a, b) {
    return a !== null && b !== null && Object.keys(a).every((key) => a[key] === b[key]);
  }

  function isInside(node, offset) {
    return node.isConnected && offset <= (node.nodeType === Node.ELEMENT_NODE ? node.childNodes : node.data).length;
  }

  function show(node) {
    const element = node && (node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement);
    if (element)
      element.scrollIntoView({block: 'nearest', inline: 'nearest'});
  }

  function goTo(where) {
    if (!where || !isInside(where.anchor, where.anchorOffset) || !isInside(where.focus, where.focusOffset))
      return;
    window.getSelection().setBaseAndExtent(where.anchor, where.anchorOffset, where.focus, where.focusOffset);
    show(where.focus);
  }

  function changeOf(record) {
    const change = {type: record.type, target: record.target};
    if (record.type === 'childList') {
      change.added = Array.from(record.addedNodes);
      change.removed = Array.from(record.removedNodes);
      change.previous = record.previousSibling;
      change.next = record.nextSibling;
    } else {
      change.name = record.attributeName;
      change.space = record.attributeNamespace;
      change.other = record.oldValue;
    }
    return change;
  }

  function elementsOf(nodes) {
    return nodes.reduce((sum, node) => sum + (node.querySelectorAll ? node.querySelectorAll('*').length : 0), 0);
  }

  function addChange(changes, change) {
    const last = changes[changes.length - 1];
    const isMore = last && change.type !== 'childList' && last.type === change.type &&
                   last.target === change.target && last.name === change.name;
    if (!isMore)
      changes.push(change);
  }

  function valueOf(change) {
    return change.type === 'characterData' ? change.target.data :
                                             change.target.getAttributeNS(change.space, change.name);
  }

  function isVoid(change) {
    return change.type !== 'childList' && valueOf(change) === change.other;
  }

  // What hangs below a node. A node of the page may have been moved into one that was not yet in the page, of
  // which the engine tells nothing: taking that move back would empty it for good.
  function shapeOf(node) {
    const shape = node.hasChildNodes() ? [[node, Array.from(node.childNodes)]] : [];
    for (const child of node.childNodes)
      shape.push(...shapeOf(child));
    return shape;
  }

  function restore(shape) {
    for (const [node, children] of shape) {
      if (children.length !== node.childNodes.length || children.some((child, i) => child !== node.childNodes[i]))
        node.replaceChildren(...children);
    }
  }

  // Turned once a change is undone, turned twice it is done.
  function turn(change) {
    if (change.type === 'childList') {
      const {target, previous, next, shapes} = change;
      change.shapes = change.added.map(shapeOf);
      change.added.forEach((node) => node.remove());
      const isBefore = next && next.parentNode === target;
      const isBehind = !isBefore && previous && previous.parentNode === target;
      const before = isBefore ? next : isBehind ? previous.nextSibling : null;
      (shapes || []).forEach(restore);
      change.removed.forEach((node) => target.insertBefore(node, before));
      [change.added, change.removed] = [change.removed, change.added];
      return;
    }
    const now = valueOf(change);
    if (change.type === 'characterData')
      change.target.data = change.other;
    else if (change.other === null)
      change.target.removeAttributeNS(change.space, change.name);
    else
      change.target.setAttributeNS(change.space, change.name, change.other);
    change.other = now;
  }

  // A field shows what was typed into it rather than what its markup says.
  function showField(node) {
    const field = (node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement || document.body).closest('input, textarea');
    if (!field || field.matches('[type=file]'))
      return;
    field.value = field.defaultValue;
    field.checked = field.defaultChecked;
  }

  class History {
    constructor() {
      this.onChange = () => {};
      this.observer = new MutationObserver((records) => this.take(records));
      this.observer.observe(window.document, {
        subtree: true, childList: true, characterData: true, attributes: true,
        characterDataOldValue: true, attributeOldValue: true,
      });
      this.clear();
    }

    clear() {
      this.observer.takeRecords();
      this.done = [];
      this.undone = [];
      this.open = null;
    }

    top() {
      return this.done[this.done.length - 1];
    }

    // The step to which the next changes belong: that of the command or of the key under way. What comes by
    // itself belongs to the last.
    take(records) {
      if (records.length === 0)
        return;
      this.onChange();
      if (document.designMode !== 'on')
        return;
      const changes = this.open ? this.open.changes : [];
      records.forEach((record) => addChange(changes, changeOf(record)));
      if (this.open)
        return;
      if (this.done.length === 0)
        this.done.push({kind: '', changes: [], before: place(), after: place(), at: 0});
      this.top().changes.push(...changes);
    }

    flush() {
      this.take(this.observer.takeRecords());
    }

    begin(kind) {
      this.flush();
      this.open = {kind: kind, changes: [], before: place(), at: Date.now()};
    }

    end(isComposing) {
      this.flush();
      const step = this.open;
      this.open = null;
      if (!step)
        return;
      step.changes = step.changes.filter((change, index, all) => all.length > 1 || !isVoid(change));
      if (step.changes.length === 0)
        return;
      step.after = place();
      step.isComposing = isComposing;
      step.isLarge = step.changes.reduce((sum, change) => sum + elementsOf(change.removed || []), 0) > LARGE;
      if (this.joins(step)) {
        const top = this.top();
        step.changes.forEach((change) => addChange(top.changes, change));
        Object.assign(top, {after: step.after, at: step.at, isComposing: isComposing});
      } else {
        this.done.push(step);
        this.trim();
      }
      this.undone = [];
    }

    // Something has been done of which nobody told before, such as the cutting of what a key copies.
    catchUp() {
      const records = this.observer.takeRecords();
      this.open = {kind: '', changes: [], before: this.atKey || place(), at: Date.now()};
      this.take(records);
      this.end(false);
    }

    joins(step) {
      const top = this.top();
      if (!top || top.kind !== step.kind || step.kind === '' || this.undone.length > 0)
        return false;
      return top.isComposing || (step.at - top.at < REST_MILLISECONDS && isSamePlace(top.after, step.before));
    }

    trim() {
      let large = 0;
      const oldest = this.done.length - MOST_STEPS;
      for (let index = this.done.length - 1; index >= 0; --index) {
        large += this.done[index].isLarge ? 1 : 0;
        if (index < oldest || large > MOST_LARGE_STEPS) {
          this.done.splice(0, index + 1);
          return;
        }
      }
    }

    // Whatever the function changes is one step.
    change(work) {
      if (this.open && this.open.isCommand)
        return work();
      this.end(false);
      this.begin('');
      this.open.isCommand = true;
      try {
        return work();
      } finally {
        this.end(false);
      }
    }

    // What the function changes belongs to what is typed next.
    leadIn(work) {
      this.end(false);
      this.begin('typed');
      work();
      this.end(true);
    }

    // What the function changes belongs to no step: attributes alone, which no other change rests on.
    changeAside(work) {
      this.flush();
      const result = work();
      if (this.observer.takeRecords().length > 0)
        this.onChange();
      return result;
    }

    // The command under way moves the caret as a part of what was done last.
    goOn() {
      if (this.top() && this.open && isSamePlace(this.top().after, this.open.before))
        this.top().after = place();
    }

    move(from, to, isBack) {
      this.end(false);
      const step = from.pop();
      if (!step)
        return false;
      const changes = isBack ? step.changes.slice().reverse() : step.changes;
      changes.forEach(turn);
      this.observer.takeRecords();
      changes.forEach((change) => showField(change.target));
      step.kind = '';
      to.push(step);
      goTo(isBack ? step.before : step.after);
      this.onChange();
      return true;
    }

    undo() {
      return this.move(this.done, this.undone, true);
    }

    redo() {
      return this.move(this.undone, this.done, false);
    }

    listen() {
      const stop = (event) => {
        event.preventDefault();
        event.stopImmediatePropagation();
      };
      window.addEventListener('beforeinput', (event) => {
        if (event.inputType === 'historyUndo' || event.inputType === 'historyRedo') {
          stop(event);
          event.inputType === 'historyUndo' ? this.undo() : this.redo();
        } else if (!this.open || !this.open.isCommand) {
          this.end(event.isComposing);
          const kind = event.inputType;
          this.begin(TYPED.test(kind) ? 'typed' : ERASED.test(kind) ? 'erased' : '');
        }
      }, true);
      window.addEventListener('input', (event) => {
        if (!this.open)
          this.catchUp();
        else if (!this.open.isCommand)
          this.end(event.isComposing);
      }, true);
      // The engine asks its own history before it tells of these keys.
      window.addEventListener('keydown', (event) => {
        this.atKey = place();
        const key = event.key.toLowerCase();
        if (document.designMode !== 'on' || event.isComposing || !event.ctrlKey || event.altKey || event.metaKey ||
            (key !== 'z' && key !== 'y'))
          return;
        stop(event);
        key === 'y' || event.shiftKey ? this.redo() : this.undo();
      }, true);
    }
  }

  return {
    of: () => {
      // An element of the page may have that name, and would be found.
      if (!Object.hasOwn(window, 'vorelHistory')) {
        window.vorelHistory = new History();
        window.vorelHistory.listen();
      }
      return window.vorelHistory;
    },
    show: show,
  };
})()
