"""The links between the documents lead to files and headings that are there."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def anchors(path):
    """The headings as a link names them."""
    headings = re.findall(r"^#+ (.*)$", path.read_text(), re.M)
    return {re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-") for heading in headings}


def main():
    broken = links = 0
    for document in [ROOT / "README.md", *(ROOT / "docs").glob("*.md")]:
        for name, anchor in re.findall(r"\]\(([^)#:]*)(?:#([^)]*))?\)", document.read_text()):
            target = document.parent / name if name else document
            links += 1
            if not target.exists() or (anchor and anchor not in anchors(target)):
                print(f"{document}: nothing is at {name}#{anchor}")
                broken += 1
    return broken > 0 or links == 0


if __name__ == "__main__":
    sys.exit(main())
