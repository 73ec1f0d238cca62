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
  // What all steps together may hold of old text and markup, in characters: some 50 MB.
  const MOST_CHARACTERS = 25000000;
  // What is typed without a rest is undone at once.
  const REST_MILLISECONDS = 1000;
  const TYPED = /^(insertText|insertCompositionText|insertFromComposition|delete(CompositionText|ByComposition))$/;
  const ERASED = /^deleteContent(Backward|Forward)$/;
  // What is dragged goes in one input and comes in another: both are one step.
  const DRAGGED = {deleteByDrag: 'dragged', insertFromDrop: 'dropped'};

  function kindOf(inputType) {
    return DRAGGED[inputType] || (TYPED.test(inputType) ? 'typed' : ERASED.test(inputType) ? 'erased' : '');
  }

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

  // What a change keeps that the page no longer has.
  function sizeOf(change) {
    const texts = change.type === 'childList' ? change.removed.map((node) => node.outerHTML || node.data) :
                                                [change.other];
    return texts.reduce((sum, text) => sum + (typeof text === 'string' ? text.length : 0), 0);
  }

  function makeStep(kind, before) {
    return {kind: kind, changes: [], known: new Map(), size: 0, before: before, after: before, at: Date.now()};
  }

  // Neighbours that come or go one by one, as the engine's commands have it, are one change.
  function join(last, change) {
    if (!last || last.type !== 'childList' || change.type !== 'childList' || last.target !== change.target || last.shapes)
      return false;
    const isGoing = last.added.length === 0 && change.added.length === 0 && change.previous === last.previous &&
                    change.removed[0] === last.next;
    const isComing = last.removed.length === 0 && change.removed.length === 0 && change.next === last.next &&
                     change.previous === last.added[last.added.length - 1];
    if (isGoing) {
      change.removed.forEach((node) => last.removed.push(node));
      last.next = change.next;
    } else if (isComing) {
      change.added.forEach((node) => last.added.push(node));
    }
    return isGoing || isComing;
  }

  // Of a text or an attribute that changes again and again, a step keeps what it was at first.
  function addChange(step, change) {
    if (change.type !== 'childList') {
      const name = change.type === 'attributes' ? (change.space || '') + ' ' + change.name : '';
      const names = step.known.get(change.target) || new Set();
      if (names.has(name))
        return;
      step.known.set(change.target, names.add(name));
    }
    step.size += sizeOf(change);
    if (!join(step.changes[step.changes.length - 1], change))
      step.changes.push(change);
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
    const shape = [];
    const add = (parent) => {
      if (parent.hasChildNodes())
        shape.push([parent, Array.from(parent.childNodes)]);
      parent.childNodes.forEach(add);
    };
    add(node);
    return shape;
  }

  function restore(shape) {
    for (const [node, children] of shape) {
      if (children.length === node.childNodes.length && children.every((child, i) => child === node.childNodes[i]))
        continue;
      refuseLoop(children, node);
      node.replaceChildren();
      node.append(together(children));
    }
  }

  // Before anything moves: the engine would refuse it when the nodes are already taken out of the page.
  function refuseLoop(nodes, parent) {
    if (nodes.some((node) => node.contains(parent)))
      throw new Error('a node can not come into itself');
  }

  // A great many nodes come and go together: the engine takes each that moves alone for a change of the page.
  function together(nodes) {
    const whole = document.createDocumentFragment();
    nodes.forEach((node) => whole.append(node));
    return whole;
  }

  function removeAll(target, nodes) {
    const isWhole = nodes.length > 1 && nodes[0] === target.firstChild && nodes[nodes.length - 1] === target.lastChild &&
                    nodes.length === target.childNodes.length && nodes.every((node) => node.parentNode === target);
    if (isWhole)
      target.replaceChildren();
    else
      nodes.forEach((node) => node.remove());
  }

  function exchange(change) {
    const {target, previous, next, added, removed, shapes} = change;
    refuseLoop(removed, target);
    Object.assign(change, {added: removed, removed: added, shapes: added.map(shapeOf)});
    removeAll(target, added);
    const isBefore = next && next.parentNode === target;
    const isBehind = !isBefore && previous && previous.parentNode === target;
    const before = isBefore ? next : isBehind ? previous.nextSibling : null;
    (shapes || []).forEach(restore);
    target.insertBefore(together(removed), before);
  }

  // The parser takes names that no script may give.
  function attributeOf(space, name) {
    try {
      return document.createAttributeNS(space, name);
    } catch (refused) {
      const holder = document.createElement('template');
      holder.innerHTML = '<i ' + name + '></i>';
      const parsed = holder.content.firstChild;
      return parsed.removeAttributeNode(parsed.attributes[0]);
    }
  }

  // Turned once a change is undone, turned twice it is done. One that fails leaves the page as it was.
  function turn(change) {
    if (change.type === 'childList') {
      try {
        exchange(change);
      } catch (error) {
        exchange(change);
        throw error;
      }
      return;
    }
    const now = valueOf(change);
    if (change.type === 'characterData') {
      change.target.data = change.other;
    } else if (change.other === null) {
      change.target.removeAttributeNS(change.space, change.name);
    } else if (now !== null) {
      change.target.getAttributeNodeNS(change.space, change.name).value = change.other;
    } else {
      const attribute = attributeOf(change.space, change.name);
      attribute.value = change.other;
      change.target.setAttributeNodeNS(attribute);
    }
    change.other = now;
  }

  function turnAll(changes) {
    const turned = [];
    try {
      for (const change of changes) {
        turn(change);
        turned.push(change);
      }
    } catch (error) {
      turned.reverse().forEach(turn);
      throw error;
    }
  }

  // A field shows what was typed into it rather than what its markup says.
  function showField(node) {
    const field = (node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement || document.body).closest('input, textarea, select');
    if (!field)
      return;
    if (/^(checkbox|radio)$/.test(field.type))
      field.checked = field.defaultChecked;
    else if (field.localName === 'select')
      Array.from(field.options).forEach((option) => option.selected = option.defaultSelected);
    else if (!/^(file|hidden|submit|reset|button|image)$/.test(field.type))
      field.value = field.defaultValue;
  }

  class History {
    constructor() {
      this.onChange = () => {};
      this.observer = new MutationObserver((records) => this.take(records));
      this.observe(false);
    }

    // Begins anew, and looks at nothing while the page is not edited: its loading would be told node by node.
    observe(on) {
      this.observer.disconnect();
      if (on) {
        this.observer.observe(window.document, {
          subtree: true, childList: true, characterData: true, attributes: true,
          characterDataOldValue: true, attributeOldValue: true,
        });
      }
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
      if (!this.open && this.done.length === 0) {
        this.done.push(makeStep('', place()));
        this.undone = [];
      }
      const step = this.open || this.top();
      records.forEach((record) => addChange(step, changeOf(record)));
    }

    flush() {
      this.take(this.observer.takeRecords());
    }

    begin(kind) {
      this.flush();
      this.open = makeStep(kind, place());
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
        step.changes.forEach((change) => addChange(top, change));
        top.kind = step.kind === 'dropped' ? '' : top.leadsIn ? step.kind : top.kind;
        Object.assign(top, {after: step.after, at: step.at, isComposing: isComposing, leadsIn: false});
      } else {
        this.done.push(step);
      }
      this.trim();
      this.undone = [];
    }

    // Something has been done of which nobody told before, such as the cutting of what a key copies.
    catchUp() {
      const records = this.observer.takeRecords();
      this.open = makeStep('', this.atKey || place());
      this.take(records);
      this.end(false);
    }

    joins(step) {
      const top = this.top();
      if (!top || this.undone.length > 0)
        return false;
      if (top.leadsIn)
        return !step.isCommand;
      if (top.kind === 'dragged')
        return step.kind === 'dropped' && step.at - top.at < REST_MILLISECONDS;
      if (top.kind !== step.kind || step.kind === '')
        return false;
      return top.isComposing || (step.at - top.at < REST_MILLISECONDS && isSamePlace(top.after, step.before));
    }

    trim() {
      let large = 0;
      let size = 0;
      const newest = this.done.length - 1;
      const oldest = this.done.length - MOST_STEPS;
      for (let index = newest; index >= 0; --index) {
        large += this.done[index].isLarge ? 1 : 0;
        size += this.done[index].size;
        if (index < oldest || large > MOST_LARGE_STEPS || (size > MOST_CHARACTERS && index < newest)) {
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

    // In place of what the engine would do for the input that has just begun.
    instead(event, work) {
      event.preventDefault();
      this.open.isCommand = true;
      try {
        work();
      } finally {
        this.end(false);
      }
    }

    // What the function changes belongs to the input that comes next, whatever it is.
    leadIn(work) {
      this.end(false);
      this.begin('');
      const step = this.open;
      work();
      this.end(true);
      if (this.top() && step.changes.length > 0)
        this.top().leadsIn = true;
    }

    // What the function changes belongs to no step: attributes alone, which no other change rests on.
    changeAside(work) {
      this.flush();
      const result = work();
      if (this.observer.takeRecords().length > 0)
        this.onChange();
      return result;
    }

    // Other names for references, in the page and in what can be brought back: no step, so that nothing brings
    // back the old ones. The names are those of attributes with their values.
    rename(root, names) {
      const seen = new Set();
      const renameAll = (node) => {
        if (node.nodeType !== Node.ELEMENT_NODE || seen.has(node))
          return;
        for (const element of [node, ...Array.from(node.querySelectorAll('*'))]) {
          seen.add(element);
          for (const attribute of element.attributes) {
            const name = names.get(attribute.localName + '=' + attribute.value);
            if (name !== undefined)
              attribute.value = name;
          }
        }
      };
      this.changeAside(() => {
        renameAll(root);
        for (const change of this.done.concat(this.undone).flatMap((step) => step.changes)) {
          if (change.type === 'childList')
            change.added.concat(change.removed).forEach(renameAll);
          else if (change.type === 'attributes' && change.other !== null)
            change.other = names.get(change.name + '=' + change.other) || change.other;
        }
      });
    }

    // The command under way moves the caret as a part of what was done last.
    goOn() {
      if (this.top() && this.open && isSamePlace(this.top().after, this.open.before))
        this.top().after = place();
    }

    move(from, to, isBack) {
      this.end(false);
      const step = from[from.length - 1];
      if (!step)
        return false;
      const changes = isBack ? step.changes.slice().reverse() : step.changes;
      try {
        turnAll(changes);
      } finally {
        this.observer.takeRecords();
      }
      changes.forEach((change) => showField(change.target));
      step.kind = '';
      to.push(from.pop());
      goTo(isBack ? step.before : step.after);
      this.onChange();
      return true;
    }

    canUndo() {
      this.flush();
      return this.done.length > 0 || (this.open !== null && this.open.changes.length > 0);
    }

    canRedo() {
      return this.undone.length > 0;
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
          this.begin(kindOf(event.inputType));
        }
      }, true);
      window.addEventListener('input', (event) => {
        if (!this.open)
          this.catchUp();
        else if (!this.open.isCommand)
          this.end(event.isComposing);
      }, true);
      // Behind the last input of what is composed: what is typed next is another text, unless it follows at once.
      window.addEventListener('compositionend', () => {
        if (this.open && this.open.isCommand)
          return;
        this.end(false);
        if (this.top() && this.top().isComposing)
          Object.assign(this.top(), {isComposing: false, after: place(), at: Date.now()});
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
    showField: showField,
  };
})()
