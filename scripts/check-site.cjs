// The part of check-site.sh that looks into pages:
//   node check-site.cjs ROOT FOLDER_FOR_THE_OUTPUTS SITE...     sites below the root
//   node check-site.cjs ROOT FOLDER_FOR_THE_OUTPUTS --links CSV
"use strict";
const childProcess = require("child_process");
const fs = require("fs");
const path = require("path");
const url = require("url");

const [root, out, ...names] = process.argv.slice(2);
const mostForAxe = Number(process.env.VOREL_AXE_PAGES || 60);
let site = "";
let own = [];
// Pages that the list names and the disk does not have.
let gone = 0;

// The pages that the compiler has written, by its own list; those of imported sites have bodies of their own.
function ownPages() {
  const names = fs.readFileSync(path.join(site, ".vorel-site"), "utf8").split("\n").slice(1)
    .map((line) => line.split("\t")[0].replace(/%([0-9a-f]{2})/g, (all, code) => String.fromCharCode(parseInt(code, 16))));
  // What was announced is listed again when it is written.
  return [...new Set(names)]
    .filter((name) => /\.html?$/i.test(name)).sort()
    .map((name) => path.join(site, name))
    .filter((name) => {
      if (fs.existsSync(name)) {
        return fs.readFileSync(name, "utf8").includes('<body class="vorel-');
      }
      ++gone;
      console.log(`gone: ${path.relative(root, name)}`);
      return false;
    });
}

function resolve(name) {
  try {
    return require.resolve(name);
  } catch {
    console.log(name + ": not there");
    return null;
  }
}

// A page with its lines as browsers and checkers count them.
function textOf(name) {
  return fs.readFileSync(name, "utf8").replace(/\r\n?/g, "\n");
}

// The lines of a page that come from its author: the body, and style sheets in the head.
function authorsLines(name) {
  const lines = textOf(name).split("\n");
  const find = (text, from) => lines.findIndex((line, i) => i >= from && line.includes(text)) + 1;
  const bodyBegin = find('<div class="page"', 0);
  // The last ones: an author's page may have such lines as well.
  const pager = lines.findLastIndex((line) => /^(<\/div>)?<nav class="pager"/.test(line)) + 1;
  const bodyEnd = pager > bodyBegin ? pager : lines.lastIndexOf("</main>") + 1;
  const headBegin = find("vorel/parts.css", 0);
  // The look of the frame, or of a slide, comes behind what authors bring.
  const headEnd = lines.findIndex((line, i) => i >= headBegin && /\/(site|slide)\.css">/.test(line)) + 1;
  return (line) => (bodyBegin > 0 && line >= bodyBegin && line < bodyEnd) || (line > headBegin && line < headEnd);
}

function validate(jar) {
  let ours = 0;
  let theirs = 0;
  const said = [];
  for (let i = 0; i < own.length; i += 200) {
    const run = childProcess.spawnSync("java", ["-Xss4m", "-jar", jar, "--format", "json", "--exit-zero-always",
      ...own.slice(i, i + 200)], { encoding: "utf8", maxBuffer: 1 << 28 });
    if (run.error) {
      console.log("java: not there");
      return 0;
    }
    for (const message of JSON.parse(run.stderr).messages) {
      const name = message.url ? url.fileURLToPath(message.url) : "";
      const line = `${path.relative(site, name)}:${message.lastLine}: ${message.type}: ${message.message}`;
      if (message.type === "info" && message.subType !== "fatal") {
        said.push(line);
      } else if (name && authorsLines(name)(message.lastLine)) {
        ++theirs;
        said.push("(the author's) " + line);
      } else {
        ++ours;
        said.push(line);
        console.log(line);
      }
    }
  }
  fs.appendFileSync(path.join(out, "vnu.txt"), said.join("\n") + "\n");
  console.log(`vnu: ${own.length} pages, ${ours} errors in what the compiler writes, ${theirs} in what authors wrote`);
  return ours;
}

// Pages spread over the site, and each kind of them.
function somePages() {
  const some = new Set(["index.html", "sitemap.html", "search.html", "cover.html", "contents1.html"]
    .map((name) => path.join(site, name)).filter((name) => own.includes(name)));
  const step = Math.max(1, Math.floor(own.length / mostForAxe));
  for (let i = 0; i < own.length; i += step) {
    some.add(own[i]);
  }
  return [...some];
}

// Whether the search finds titles and texts, from the disk.
async function search(browser) {
  const index = path.join(site, "vorel/search/index.js");
  if (!fs.existsSync(index)) {
    return 0;
  }
  let nodes = [];
  global.vorelSearch = { course: (data) => { nodes = data.nodes; }, part: (part, filter, texts) => { nodes = texts; } };
  (0, eval)(fs.readFileSync(index, "utf8"));
  const asked = [nodes[nodes.length - 1][0]];
  (0, eval)(fs.readFileSync(path.join(site, "vorel/search/0.js"), "utf8"));
  const text = nodes.find((one) => one.length > 60);
  if (text) {
    asked.push(text.slice(40, 46).trim());
  }
  let faults = 0;
  for (const words of asked) {
    const page = await browser.newPage();
    await page.goto(url.pathToFileURL(path.join(site, "search.html")).href + "?q=" + encodeURIComponent(words));
    const found = await page.waitForSelector("#v-results li a[href]", { timeout: 20000 }).catch(() => null);
    if (!found) {
      ++faults;
      console.log(`the search does not find "${words}"`);
    }
    await page.close();
  }
  console.log(`search: ${asked.length - faults} of ${asked.length} found`);
  return faults;
}

async function judge() {
  const puppeteer = require("puppeteer-core");
  const axe = fs.readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");
  const browser = await puppeteer.launch({ executablePath: process.env.CHROMIUM, args: ["--no-sandbox"] });
  const said = [];
  let serious = 0;
  let pages = 0;
  for (const width of [1280, 390]) {
    for (const name of somePages()) {
      const page = await browser.newPage();
      await page.setViewport({ width, height: 844 });
      await page.goto(url.pathToFileURL(name).href, { waitUntil: "load" });
      const wide = await page.evaluate(() => document.documentElement.scrollWidth > window.innerWidth);
      await page.evaluate(axe);
      const result = await page.evaluate(() => window.axe.run({ include: [["html"]], exclude: [["iframe"]] },
        { iframes: false, resultTypes: ["violations"] }));
      ++pages;
      const relative = path.relative(site, name);
      if (wide) {
        ++serious;
        said.push(`${relative} at ${width}: wider than the window`);
        console.log(said[said.length - 1]);
      }
      for (const fault of result.violations) {
        for (const node of fault.nodes) {
          const inside = await page.evaluate((selector) => {
            const element = document.querySelector(selector);
            return Boolean(element && element.closest(".page") && !element.matches(".page"));
          }, node.target[0]).catch(() => false);
          const line = `${inside ? "(the author's) " : ""}${relative} at ${width}: ${fault.impact}: ${fault.id}: ${node.target}`;
          said.push(line);
          if (!inside && (fault.impact === "serious" || fault.impact === "critical")) {
            ++serious;
            console.log(line);
          }
        }
      }
      await page.close();
    }
  }
  serious += await search(browser);
  await browser.close();
  fs.appendFileSync(path.join(out, "axe.txt"), said.join("\n") + "\n");
  console.log(`axe: ${pages} looks at pages (desktop and phone), ${serious} serious faults in the frame`);
  return serious;
}

function decoded(text) {
  return text.replace(/(%[0-9a-f]{2})+/gi, (bytes) => Buffer.from(bytes.replace(/%/g, ""), "hex").toString("utf8"));
}

function plain(text) {
  const names = { amp: "&", lt: "<", gt: ">", quot: '"', apos: "'", nbsp: "\u00a0" };
  return text.replace(/&(?:#x([0-9a-f]{1,6})|#(\d{1,7})|(\w+));/gi, (all, hex, number, name) => {
    const code = hex ? parseInt(hex, 16) : Number(number);
    return name ? names[name] || all : code <= 0x10ffff ? String.fromCodePoint(code) : all;
  });
}

// What the course itself holds, by its path in small letters; null when nobody says where it lies.
let courseFiles = null;
function inCourse(relative) {
  const course = process.env.VOREL_COURSE;
  if (!course) {
    return null;
  }
  if (!courseFiles) {
    courseFiles = new Map();
    const walk = (folder) => {
      for (const entry of fs.readdirSync(path.join(course, folder), { withFileTypes: true })) {
        const name = path.join(folder, entry.name);
        entry.isDirectory() ? walk(name) : courseFiles.set(name.toLowerCase(), path.join(course, name));
      }
    };
    walk("");
  }
  return courseFiles.get(path.normalize(relative).toLowerCase()) || null;
}

function readPage(name) {
  const bytes = fs.readFileSync(name);
  for (const code of ["utf-8", "gb18030"]) {
    try {
      return new TextDecoder(code, { fatal: true }).decode(bytes);
    } catch {
      // The next one.
    }
  }
  return bytes.toString("latin1");
}

// The tags of a page: name, attributes and line. What scripts and remarks hold is none.
function tagsOf(text) {
  const blank = text.replace(/<!--[^]*?-->|(<(script|style)\b[^>]*>)[^]*?(?=<\/\2)/gi,
    (all, tag) => (tag || "") + all.slice((tag || "").length).replace(/[^\n]/g, " "));
  const tags = [];
  let line = 1;
  let at = 0;
  for (const tag of blank.matchAll(/<([a-z][\w:-]*)((?:"[^"]*"|'[^']*'|[^>"'])*)>/gi)) {
    for (; at < tag.index; ++at) {
      line += blank[at] === "\n" ? 1 : 0;
    }
    const attributes = {};
    for (const one of tag[2].matchAll(/([^\s=/]+)\s*=\s*(?:"([^"]*)"|'([^']*)'|([^\s"'>]+))/g)) {
      attributes[one[1].toLowerCase()] ??= plain(one[2] ?? one[3] ?? one[4]);
    }
    tags.push({ name: tag[1].toLowerCase(), attributes, line });
  }
  return tags;
}

function placesOf(name) {
  const places = new Set();
  for (const tag of tagsOf(readPage(name))) {
    places.add(tag.attributes.id);
    if (tag.name === "a") {
      places.add(tag.attributes.name);
    }
  }
  return places;
}

// The links to places within pages of the site, from the pages that the compiler has written.
function deadPlaces() {
  const places = new Map();
  const has = (name, fragment) => {
    if (!places.has(name)) {
      places.set(name, placesOf(name));
    }
    return places.get(name).has(fragment) || places.get(name).has(decoded(fragment));
  };
  const said = [];
  const counts = { good: 0, ours: 0, authors: 0 };
  for (const page of own) {
    const isAuthors = authorsLines(page);
    for (const tag of tagsOf(textOf(page))) {
      const reference = (tag.attributes.href || tag.attributes.src || "").trim();
      const hash = reference.indexOf("#");
      const fragment = reference.slice(hash + 1);
      // The top of a page has no name, and a frame's script reads which page it shall show.
      if (hash < 0 || !fragment || fragment.toLowerCase() === "top" || fragment.startsWith("v-page=") ||
        /^([a-z][a-z0-9+.-]*:|\/)/i.test(reference)) {
        continue;
      }
      const file = decoded(reference.slice(0, hash).split("?")[0]);
      const target = file ? path.join(path.dirname(page), file) : page;
      // Files that are gone are linkinator's to find.
      if (!/\.html?$/i.test(target) || !fs.existsSync(target)) {
        continue;
      }
      if (has(target, fragment)) {
        ++counts.good;
        continue;
      }
      const source = inCourse(path.relative(site, target));
      const kind = !isAuthors(tag.line) || (source && has(source, fragment)) ? "ours" : "authors";
      ++counts[kind];
      said.push(`${kind}: ${path.relative(site, page)}:${tag.line}: ${reference}`);
      if (kind === "ours") {
        console.log(said[said.length - 1]);
      }
    }
  }
  fs.appendFileSync(path.join(out, "places.txt"), said.join("\n") + "\n");
  console.log(`places: ${counts.good} links good, ${counts.ours} dead in what the compiler writes, ` +
    `${counts.authors} dead in what authors wrote`);
  return counts.ours;
}

// Dead links as linkinator lists them: ours, those in what authors wrote, and those that it got no answer to.
function deadLinks(list) {
  const counts = { OK: 0, ours: 0, authors: 0, unanswered: 0 };
  const pages = new Map();
  // Where the links lead that the compiler has written into a page, below the root.
  const oursIn = (name) => {
    if (!pages.has(name)) {
      const text = fs.existsSync(name) && fs.statSync(name).isFile() ? textOf(name) : "";
      const isAuthors = text.includes('<body class="vorel-') ? authorsLines(name) : () => true;
      const targets = tagsOf(text).filter((tag) => !isAuthors(tag.line))
        .map((tag) => decoded((tag.attributes.href || tag.attributes.src || "").split(/[?#]/)[0]))
        .map((reference) => path.relative(root, path.resolve(path.dirname(name), reference)));
      pages.set(name, new Set(targets));
    }
    return pages.get(name);
  };
  // In the forms the course's files lie as they do in the course.
  const belowForm = (address) => address.replace(/^(https?:\/\/[^/]*\/)?(课程网站|申报网站|(合成\/)?(HTML|Ondrel))\//, "");
  for (const line of fs.readFileSync(list, "utf8").split("\n")) {
    const parts = /^"?(.*?)"?,(\d+),(OK|BROKEN|SKIPPED),"?(.*?)"?(,.*)?$/.exec(line);
    // Pages that it serves itself come without a machine; of others it does not skip odd ones, or another localhost.
    if (!parts || parts[3] === "SKIPPED" || /^https?:\/\//.test(parts[1])) {
      continue;
    }
    const address = decoded(parts[1]);
    let kind = "OK";
    if (parts[3] === "BROKEN") {
      const page = path.join(root, decodeURIComponent(new URL(parts[4] || "/", "http://x/").pathname));
      const target = path.normalize(address.replace(/^https?:\/\/[^/]*\//, "").split(/[?#]/)[0]);
      const isOurs = oursIn(page).has(target) || inCourse(belowForm(target));
      kind = parts[2] === "0" ? "unanswered" : isOurs ? "ours" : "authors";
      if (kind !== "authors" || counts.authors < 20) {
        console.log(`${kind}: ${line}`);
      }
    }
    ++counts[kind];
  }
  console.log(`linkinator: ${counts.OK} links good, ${counts.ours} dead in what the compiler writes, ` +
    `${counts.authors} dead in what authors wrote, ${counts.unanswered} without an answer` +
    (process.env.VOREL_COURSE ? "; compared with the course's own files" : ""));
  return counts.OK === 0 ? 1 : counts.ours + counts.unanswered;
}

(async () => {
  if (names[0] === "--links") {
    process.exit(deadLinks(names[1]) > 0 ? 1 : 0);
  }
  const jar = resolve("vnu-jar/build/dist/vnu.jar");
  const hasAxe = resolve("puppeteer-core") && resolve("axe-core/axe.min.js");
  let faults = 0;
  for (const name of names) {
    site = path.join(root, name);
    own = ownPages();
    console.log(`${name}: ${own.length} pages`);
    faults += own.length === 0;
    faults += deadPlaces();
    faults += jar ? validate(jar) : 0;
    if (!process.env.CHROMIUM) {
      console.log("Chromium: not there");
    } else if (hasAxe) {
      faults += await judge();
    }
  }
  process.exit(faults + gone > 0 ? 1 : 0);
})();
