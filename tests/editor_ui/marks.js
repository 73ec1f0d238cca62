// Reads the selection's marks out of the page, or writes them into a copy of it.
(function (read) {
  const s = getSelection();
  if (read) {
    const texts = [], walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode())
      texts.push(walker.currentNode);
    const places = {};
    for (const text of texts) {
      for (const mark of '[]|') {
        const at = text.data.indexOf(mark);
        if (at < 0)
          continue;
        text.deleteData(at, 1);
        places[mark] = [text, at];
      }
    }
    for (const [mark, [text, at]] of Object.entries(places)) {
      if (text.data === '') {
        places[mark] = [text.parentNode, Array.from(text.parentNode.childNodes).indexOf(text)];
        text.remove();
      }
    }
    const start = places['['] || places['|'], end = places[']'] || places['|'];
    if (start)
      s.setBaseAndExtent(...start, ...end);
    else
      s.removeAllRanges();
    return '';
  }
  const copy = document.body.cloneNode(true);
  const put = (node, offset, mark) => {
    const way = [];
    for (; node !== document.body; node = node.parentNode)
      way.unshift(Array.from(node.parentNode.childNodes).indexOf(node));
    const place = way.reduce((n, index) => n.childNodes[index], copy);
    if (place.nodeType === Node.TEXT_NODE)
      place.insertData(offset, mark);
    else
      place.insertBefore(document.createTextNode(mark), place.childNodes[offset] || null);
  };
  if (s.rangeCount === 0)
    return copy.innerHTML;
  const range = s.getRangeAt(0);
  if (range.collapsed) {
    put(range.startContainer, range.startOffset, '|');
  } else {
    put(range.endContainer, range.endOffset, ']');
    put(range.startContainer, range.startOffset, '[');
  }
  return copy.innerHTML;
})
