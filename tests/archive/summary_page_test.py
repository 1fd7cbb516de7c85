"""The page of quon5-archive in a real browser. Exit status 77, which counts as skipped, without one.

    summary_page_test.py DIRECTORY_OF_PROGRAMS [PICTURE.png]
"""

import pathlib
import shutil
import sys

sys.path.append(str(pathlib.Path(__file__).parents[1] / "pages"))
import browser  # noqa: E402
import stored  # noqa: E402

HOSTILE = "</script><script>document.title='broken'<!--"
NUMBER = 24


def expect(found, wanted):
    assert found == wanted, f"{found!r} is not {wanted!r}"


def main(picture=None):
    with stored.Archive(NUMBER) as archive, browser.Browser() as view:
        archive.keep_results()
        broken = archive.break_tests()
        tests = archive.all()
        shutil.copytree(tests[0], archive.tests / HOSTILE)
        stored.change(tests[0], stored.OUTPUTS[1], "sec", "min")
        status, _, messages = archive.run("compare=yes", "page=yes")
        expect((status, "Traceback" in messages), (1, False))
        page = archive.results / "summary.html"
        view.open(page)
        own = [url for url in view.requests() if not url.startswith(("chrome:", "data:"))]
        expect([url.rpartition("/")[2] for url in own], ["summary.html"])
        expect(view.log("browser"), [])

        def texts(selector):
            return view.run("return [...document.querySelectorAll(arguments[0])].map(e => e.textContent)", selector)

        def names():
            return [text.removesuffix(" files") for text in texts("tbody td:first-child")]
        expect(view.run("return document.title"), "Stored tests reduced again")
        expect(texts("#verdict"), [f"{NUMBER + 1} tests: 4 refused, 3 failed, 1 changed, 17 same."])
        expect(names()[:8], [*sorted(name for name in broken if broken[name][0] == "refused"),
                             *sorted(name for name in broken if broken[name][0] == "failed"), tests[0].name])
        expect(len(names()), NUMBER + 1)
        if picture:
            pathlib.Path(picture).write_bytes(view.screenshot())
        # Sorted by name, then the other way round.
        view.run("document.querySelectorAll('th button')[0].click()")
        expect(names(), sorted(names()))
        view.run("document.querySelectorAll('th button')[0].click()")
        expect(names(), sorted(names(), reverse=True))
        expect(view.run("return document.querySelector('th').ariaSort"), "descending")
        # Filtered by a part of the name, by what changed, by status.
        write = "const w = document.getElementById('words'); w.value = arguments[0]; w.dispatchEvent(new Event('input'))"
        for words, wanted in (("</SCRIPT>", [HOSTILE]), ("filter_data.42: changed", [tests[0].name]), ("nothing", [])):
            view.run(write, words)
            expect(names(), wanted)
        view.run(write, "")
        view.run("document.querySelector('[value=same]').click()")
        expect(sorted(names()), sorted([tests[0].name, *broken]))
        expect(texts("#shown"), [f"8 of {NUMBER + 1} tests"])
        # Links: to the page of a failed test with its verdict, and of the one with the hostile name.
        view.run("document.querySelector('[value=same]').click()")
        links = view.run("return [...document.querySelectorAll('tbody a:not(.hint)')].map(a => [a.textContent, a.href])")
        expect(len(links), NUMBER + 1 - 4)  # a refused one has no page
        for name in (HOSTILE, tests[0].name):
            view.open(dict(links)[name].removeprefix("file://"))
            expect(texts("#verdict"), ["Complete. 0 errors, 0 warnings."])
    print("the page is as it should be")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[2:]) if browser.is_there() else 77)
