// Searches titles and texts of the course, without a server: the index and the texts come as script files, since a
// page that was opened from a disk may load nothing else. Of the texts only those parts are loaded that can hold the
// words, and only until the page is full.
(function () {
  "use strict";

  var SHOWN_AT_ONCE = 20;
  var AROUND = 40;
  var folder = document.currentScript.src.replace(/search\.js.*$/, "search/");
  var found = document.getElementById("v-found");
  var list = document.getElementById("v-results");
  var more = document.getElementById("v-more");
  var words = [];
  var patterns = []; // of the words
  var course = null;
  var wanted = SHOWN_AT_ONCE;
  var shown = 0;
  var listed = {};
  var waiting = []; // parts that may hold the words: the file, and the node of those of imported sites
  var ready = []; // what was found and is not shown yet

  // As the compiler folds what it writes into the filters. Keeps the length, so that places hold.
  function fold(text) {
    var plain = text.replace(/[\uff01-\uff5e]/g, function (c) {
      return String.fromCharCode(c.charCodeAt(0) - 0xfee0);
    });
    // A capital sigma at a word's end has another small one, and a capital I with its dot would become two characters.
    return plain.replace(/[\u0130\u03a3]/g, function (c) { return c === "\u0130" ? "i" : "\u03c3"; }).toLowerCase();
  }

  // Beside a wide character a blank is the author's taste: "第 1 章" holds "第1章".
  function patternOf(word) {
    var source = "";
    for (var i = 0; i < word.length; ++i) {
      if (i > 0 && (word[i - 1] >= "\u2e80" || word[i] >= "\u2e80")) {
        source += "\\s*";
      }
      source += word[i].replace(/[\\^$.*+?()[\]{}|\/-]/, "\\$&");
    }
    return new RegExp(source, "g");
  }

  // Of the word at or behind a place of the folded text; null where there is none.
  function findFrom(pattern, folded, at) {
    pattern.lastIndex = at;
    return pattern.exec(folded);
  }

  function holdsAll(text) {
    return patterns.every(function (pattern) { return findFrom(pattern, text, 0); });
  }

  function mayHold(filter) {
    var bits = atob(filter);
    var mask = bits.length * 8 - 1;
    return words.every(function (word) {
      for (var i = 1; i < word.length; ++i) {
        var hash = (((word.charCodeAt(i - 1) * 40503 + word.charCodeAt(i) * 30011) >>> 0) >>> 2) & mask;
        if (!(bits.charCodeAt(hash >> 3) & (1 << (hash & 7)))) {
          return false;
        }
      }
      return true;
    });
  }

  function load(name) {
    var script = document.createElement("script");
    script.charset = "utf-8";
    script.src = folder + name;
    script.onerror = function () { say("读取搜索数据失败。"); };
    document.head.appendChild(script);
  }

  function say(text) { found.textContent = text; }

  // The word that comes first at or behind a place.
  function firstOf(folded, at) {
    return patterns.reduce(function (first, pattern) {
      var hit = findFrom(pattern, folded, at);
      return hit && (!first || hit.index < first.index) ? hit : first;
    }, null);
  }

  // The text with the words marked.
  function marked(element, text) {
    var folded = fold(text);
    var at = 0;
    while (at < text.length) {
      var first = firstOf(folded, at);
      if (!first) {
        break;
      }
      var end = first.index + first[0].length;
      element.appendChild(document.createTextNode(text.slice(at, first.index)));
      var mark = document.createElement("mark");
      mark.textContent = text.slice(first.index, end);
      element.appendChild(mark);
      at = end;
    }
    element.appendChild(document.createTextNode(text.slice(at)));
    return element;
  }

  function excerpt(text) {
    var first = firstOf(fold(text), 0);
    var place = first ? first.index : 0;
    var begin = Math.max(0, place - AROUND);
    var end = Math.min(text.length, place + 2 * AROUND);
    return (begin > 0 ? "…" : "") + text.slice(begin, end) + (end < text.length ? "…" : "");
  }

  function path(index, own) {
    var titles = own ? [course.nodes[index][0]] : [];
    for (var i = course.nodes[index][2]; i > 0; i = course.nodes[i][2]) {
      titles.unshift(course.nodes[i][0]);
    }
    return titles.join(" › ");
  }

  // A page of an imported site shows where the site does: in the node's own page, or by itself.
  function addressOf(node, page) {
    if (!page) {
      return node[1];
    }
    return node[3] ? node[1].split("/")[0] + "/" + page[0] : node[1] + "#v-page=" + page[0];
  }

  function show(index, text, page) {
    var node = course.nodes[index];
    var item = document.createElement("li");
    var link = document.createElement("a");
    link.href = addressOf(node, page);
    if (node[3]) {
      link.target = "_blank";
      link.rel = "noopener";
      link.setAttribute("data-open", node[3]);
    }
    item.appendChild(marked(link, page ? page[1] : node[0]));
    if (node[3]) {
      var hint = document.createElement("span");
      hint.className = "heard";
      hint.textContent = "（在新窗口打开）";
      link.appendChild(hint);
    }
    [["where", path(index, Boolean(page))], ["excerpt", text ? excerpt(text) : ""]].forEach(function (line) {
      if (line[1]) {
        var paragraph = document.createElement("p");
        paragraph.className = line[0];
        item.appendChild(line[0] === "excerpt" ? marked(paragraph, line[1])
          : paragraph.appendChild(document.createTextNode(line[1])).parentNode);
      }
    });
    list.appendChild(item);
    ++shown;
  }

  function step() {
    while (ready.length > 0 && shown < wanted) {
      var next = ready.shift();
      show(next[0], next[1], next[2]);
    }
    if (shown < wanted && waiting.length > 0) {
      say("正在搜索……已找到 " + shown + " 条。");
      load(waiting[0][0]);
      return;
    }
    more.hidden = ready.length === 0 && waiting.length === 0;
    if (shown === 0) {
      say("没有找到“" + words.join(" ") + "”。");
    } else {
      say(more.hidden ? "共找到 " + shown + " 条。" : "已显示 " + shown + " 条。");
    }
  }

  more.addEventListener("click", function () {
    var before = list.children.length;
    wanted += SHOWN_AT_ONCE;
    step();
    if (list.children.length > before) {
      list.children[before].firstChild.focus();
    }
  });

  window.vorelSearch = {
    course: function (data) {
      course = data;
      course.nodes.forEach(function (node, index) {
        if (holdsAll(fold(node[0]))) {
          listed[index] = true;
          ready.push([index, ""]);
        }
      });
      course.filters.forEach(function (filter, part) {
        if (mayHold(filter)) {
          waiting.push([part + ".js"]);
        }
      });
      course.sites.forEach(function (site) {
        if (mayHold(site[2])) {
          waiting.push([site[0], site[1]]);
        }
      });
      step();
    },
    part: function (part, filter, texts) {
      waiting.shift();
      texts.forEach(function (text, i) {
        var index = part * course.size + i;
        if (!listed[index] && holdsAll(fold(course.nodes[index][0] + "\n" + text))) {
          ready.push([index, text]);
        }
      });
      step();
    },
    pages: function (filter, pages) {
      var node = waiting.shift()[1];
      pages.forEach(function (page) {
        if (holdsAll(fold(page[1] + "\n" + page[2]))) {
          ready.push([node, page[2], page]);
        }
      });
      step();
    }
  };

  var asked = /[?&]q=([^&#]*)/.exec(location.search);
  var query = "";
  if (asked) {
    try {
      query = decodeURIComponent(asked[1].replace(/\+/g, " "));
    } catch (e) {
      query = asked[1];
    }
  }
  var box = document.querySelector(".search input");
  if (box) {
    box.value = query;
  }
  words = fold(query).split(/\s+/).filter(function (word) { return word !== ""; });
  patterns = words.map(patternOf);
  if (words.length > 0) {
    document.title = query + " - " + document.title;
    say("正在搜索……");
    load("index.js");
  } else if (box) {
    box.focus();
  }
})();
