// The tables of a page, as their dialog shows and changes them.
(function () {
  'use strict';
  const ATTRIBUTES = {
    width: 'width', background: 'bgcolor', borderColour: 'bordercolor', border: 'border',
    cellSpacing: 'cellspacing', cellPadding: 'cellpadding',
  };

  function widthOf(row) {
    return Array.from(row.cells).reduce((sum, cell) => sum + cell.colSpan, 0);
  }

  // Calls for each row with the number of columns that cells of the rows above it take.
  function eachRow(table, visit) {
    const covered = [];
    const rows = Array.from(table.rows);
    rows.forEach((row, index) => {
      visit(row, covered[index] || 0);
      for (const cell of row.cells) {
        const last = cell.rowSpan === 0 ? rows.length : Math.min(rows.length, index + cell.rowSpan);
        for (let below = index + 1; below < last; ++below)
          covered[below] = (covered[below] || 0) + cell.colSpan;
      }
    });
  }

  function info(table) {
    let columns = 0;
    eachRow(table, (row, covered) => {
      columns = Math.max(columns, covered + widthOf(row));
    });
    const result = {rows: table.rows.length, columns: columns};
    for (const [key, attribute] of Object.entries(ATTRIBUTES))
      result[key] = table.getAttribute(attribute) || '';
    return result;
  }

  function fitColumns(row, wanted) {
    let width = widthOf(row);
    while (row.cells.length > 0 && width > wanted) {
      const last = row.cells[row.cells.length - 1];
      const dropped = Math.min(last.colSpan, width - wanted);
      if (last.colSpan > dropped + 1)
        last.colSpan -= dropped;
      else if (last.colSpan > dropped)
        last.removeAttribute('colspan');
      else
        last.remove();
      width -= dropped;
    }
    const isHead = row.cells.length > 0 && row.cells[row.cells.length - 1].localName === 'th';
    for (; width < wanted; ++width) {
      const cell = document.createElement(isHead ? 'th' : 'td');
      cell.textContent = '\u00a0';
      row.append(cell);
    }
  }

  // Rows come and go at the end of the body, in front of a foot.
  function fitRows(table, wanted) {
    const inBody = Array.from(table.tBodies, (body) => Array.from(body.rows)).flat();
    for (let left = table.rows.length; left > wanted; --left)
      (inBody.pop() || table.rows[left - 1]).remove();
    const body = table.rows.length < wanted && (table.tBodies[table.tBodies.length - 1] || table.createTBody());
    while (table.rows.length < wanted)
      body.insertRow(-1);
    Array.from(table.rows).forEach((row, index) => {
      for (const cell of row.cells) {
        const room = table.rows.length - index;
        if (cell.rowSpan > room && room === 1)
          cell.removeAttribute('rowspan');
        else if (cell.rowSpan > room)
          cell.rowSpan = room;
      }
    });
  }

  function fit(table, wanted) {
    for (const [key, attribute] of Object.entries(ATTRIBUTES)) {
      if ((table.getAttribute(attribute) || '') !== wanted[key])
        table.setAttribute(attribute, wanted[key]);
    }
    fitRows(table, wanted.rows);
    eachRow(table, (row, covered) => fitColumns(row, Math.max(0, wanted.columns - covered)));
  }

  // A table that is selected as a whole, with nothing beside it.
  function chosen(range) {
    if (range.collapsed)
      return null;
    const content = range.cloneContents();
    if (content.children.length !== 1 || content.firstElementChild.localName !== 'table' ||
        content.textContent.trim() !== content.firstElementChild.textContent.trim())
      return null;
    const around = range.commonAncestorContainer;
    const tables = around.nodeType === Node.ELEMENT_NODE ? Array.from(around.children) : [];
    return tables.find((element) => element.localName === 'table' && range.intersectsNode(element)) || null;
  }

  return {info: info, fit: fit, chosen: chosen};
})()
