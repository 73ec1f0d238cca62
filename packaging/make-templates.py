#!/usr/bin/env python3
"""Makes the delivered templates and suggested trees from their sources in sysdata/art.

The sources are UTF-8 and the same pages serve every template; what is delivered is in the program's code page,
one copy for each template, so that a template can be handed on as one folder.
"""

import pathlib
import shutil

SYSDATA = pathlib.Path(__file__).resolve().parent.parent / "sysdata"
ART = SYSDATA / "art"
DATA = SYSDATA / "data"

# The seed database holds the nodes 1 to 3; the root that all others hang below is 3.
FIRST_NEW_ID = 4

ROLES = ["主讲教师一", "主讲教师二", "主讲教师三", "主讲教师四",
         "课程介绍", "课程录像一", "课程录像二", "课程录像三"]
# The role 课程介绍 is the first of the lecture recordings, not the branch of the same title.
ROLE_PARENTS = {"课程介绍": "课程录像"}


def read_outline():
    """The lines of the outline as (level, title, page name or "")."""
    nodes = []
    for line in (ART / "InitialNodes.outline").read_text("utf-8").splitlines():
        if line and not line.startswith("#"):
            title, _, page = line.partition("|")
            nodes.append(((len(line) - len(line.lstrip())) // 2, title.strip(), page.strip()))
    return nodes


def links(nodes, index):
    """First child and next sibling of a node, as line numbers; -1 for none."""
    level = nodes[index][0]
    child = index + 1 if index + 1 < len(nodes) and nodes[index + 1][0] > level else -1
    for after in range(index + 1, len(nodes)):
        if nodes[after][0] < level:
            break
        if nodes[after][0] == level:
            return child, after
    return child, -1


def initial_nodes(nodes):
    lines = []
    for index, (_, title, page) in enumerate(nodes):
        child, sibling = links(nodes, index)
        lines.append(f"{title},{child},{sibling},{page},1")
    return lines


def ids_in_order_of_creation(nodes):
    """Ids as the program gives them out: a node, then its children, then its next sibling."""
    ids = {}

    def create(index):
        while index >= 0:
            ids[index] = FIRST_NEW_ID + len(ids)
            child, index_after = links(nodes, index)
            create(child)
            index = index_after

    create(0)
    return ids


def parent_title(nodes, index):
    for before in range(index, -1, -1):
        if nodes[before][0] < nodes[index][0]:
            return nodes[before][1]
    return ""


def custom_titles(nodes):
    ids = ids_in_order_of_creation(nodes)
    lines = ["[Id]"]
    for role in ROLES:
        found = [index for index, node in enumerate(nodes) if node[1] == role
                 and parent_title(nodes, index) == ROLE_PARENTS.get(role, parent_title(nodes, index))]
        if len(found) != 1:
            raise SystemExit(f"the outline has {len(found)} nodes for the role {role}")
        lines.append(f"{role}={ids[found[0]]}")
    return lines + ["[Title]"] + [f"{role}=" for role in ROLES]


def write_lines(path, lines):
    path.write_bytes(("\r\n".join(lines) + "\r\n").encode("gbk"))


def page(body):
    # The link stands inside an element: at the start of a page the browser would move it into the head, and
    # saving the body would lose the look.
    text = f'<div class="v-page"><link rel="stylesheet" href="../skin/page.css">\n{body.strip()}\n</div>'
    return text.encode("gbk")


def make_template(source, nodes):
    folder = DATA / "VorelTemplates" / source.name
    pages = folder / "eht" / "htm"
    skin = folder / "Skin" / "skin"
    for made in (pages, skin):
        shutil.rmtree(made, ignore_errors=True)
        made.mkdir(parents=True)
    for body in sorted((ART / "pages").glob("*.html")):
        (pages / f"{body.stem}.htm").write_bytes(page(body.read_text("utf-8")))
    for sheet, last in (("page", []), ("site", [ART / "templates" / "site-print.css"])):
        parts = [source / "tokens.css", ART / "templates" / f"{sheet}-base.css", source / f"{sheet}.css"] + last
        (skin / f"{sheet}.css").write_text("\n".join(part.read_text("ascii") for part in parts), "ascii")
    for picture in source.glob("*.svg"):
        if picture.name != "icon.svg":
            shutil.copyfile(picture, skin / picture.name)
    (folder / "背景色.txt").write_bytes((source / "tree-colour.txt").read_text("ascii").strip().encode())
    write_lines(folder / "InitialNodes.txt", initial_nodes(nodes))


def main():
    nodes = read_outline()
    for name in ("InitialNodes.txt", "VorelInitialNodes.txt"):
        write_lines(DATA / name, initial_nodes(nodes))
    write_lines(DATA / "SelfDefineTitle.ini", custom_titles(nodes))
    for source in sorted((ART / "templates").iterdir()):
        if source.is_dir():
            make_template(source, nodes)


if __name__ == "__main__":
    main()
