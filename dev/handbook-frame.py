#!/usr/bin/env python3
"""Puts the frame around the pages of the handbook: head, contents, the ways to the neighbours. Run it after a page was
added or a heading changed. What stands between <main> and </main> is the page's own, apart from its contents."""
import html
import pathlib
import re
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "docs" / "handbook"
ORDER = """index first-measurement connection main-window photometry quantitation kinetics wavelength-scan
multi-wavelength dna-protein curves processing instrument program-options printing files batch simulator keyboard messages
after-a-crash""".split()
PAGE = """<!DOCTYPE html>
<html lang="en" xmlns="http://www.w3.org/1999/xhtml">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<title>{title}</title>
<link rel="stylesheet" href="handbook.css"/>
</head>
<body>
<header>
<nav class="pages" aria-label="Pages">
{ways}
</nav>
</header>
<main>
{body}
</main>
<footer>
<nav class="pages" aria-label="Pages, again">
{ways}
</nav>
</footer>
</body>
</html>
"""


def body_of(name):
    text = (FOLDER / f"{name}.html").read_text(encoding="utf-8")
    body = re.search(r"<main>(.*)</main>", text, re.S).group(1)
    return re.sub(r'\n*<nav class="contents".*?</nav>\n*', "\n", body, flags=re.S).strip()


def heading_of(body):
    return re.sub(r"<[^>]*>", "", re.search(r"<h1[^>]*>(.*?)</h1>", body, re.S).group(1))


def ways_of(name, titles):
    at = ORDER.index(name)
    rows = []
    if at > 0:
        rows.append(f'<li><a href="{ORDER[at - 1]}.html" rel="prev">Previous: {titles[ORDER[at - 1]]}</a></li>')
        rows.append('<li><a href="index.html">Contents</a></li>')
    if at + 1 < len(ORDER):
        rows.append(f'<li><a href="{ORDER[at + 1]}.html" rel="next">Next: {titles[ORDER[at + 1]]}</a></li>')
    return "<ul>\n" + "\n".join(rows) + "\n</ul>"


def with_contents(name, body):
    heads = re.findall(r'<h2 id="([^"]+)">(.*?)</h2>', body, re.S)
    if len(heads) < 2 or name == "index":
        return body
    rows = "\n".join(f'<li><a href="#{anchor}">{re.sub("<[^>]*>", "", words)}</a></li>' for anchor, words in heads)
    contents = f'<nav class="contents" aria-label="On this page">\n<ul>\n{rows}\n</ul>\n</nav>'
    end = body.index("</h1>") + len("</h1>")
    return body[:end] + "\n\n" + contents + "\n" + body[end:]


def main():
    bodies = {name: body_of(name) for name in ORDER}
    titles = {name: heading_of(body) for name, body in bodies.items()}
    stray = {path.stem for path in FOLDER.glob("*.html")} - set(ORDER)
    if stray:
        sys.exit(f"pages without a place in the order: {sorted(stray)}")
    for name, body in bodies.items():
        title = titles[name] if name == "index" else f"{titles[name]} - Spectrane handbook"
        text = PAGE.format(title=html.escape(html.unescape(title), quote=False), ways=ways_of(name, titles),
                           body=with_contents(name, body))
        (FOLDER / f"{name}.html").write_text(text, encoding="utf-8")


main()
