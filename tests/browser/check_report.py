#!/usr/bin/env python3
"""Opens reports of havhost in a browser and uses them.

  check_report.py HAVHOST [served]    the pages that havhost writes, or those that it serves
"""
import sys

import browser
import models

DISKS = "#class-T_DiskDrive"


class Report(browser.PageTest):

    def show_machine(self, **screen):
        self.show(self.page_of("machine", models.MACHINE), **screen)

    def show_disks(self):
        self.show_machine()
        self.scroll_to(DISKS)

    def rows(self):
        return self.texts(DISKS + " tbody th")

    def type(self, selector, text):
        field = self.one(selector)
        field.clear()
        field.send_keys(text)

    def press(self, *keys):
        from selenium.webdriver.common.action_chains import ActionChains
        ActionChains(self.driver).send_keys(*keys).perform()

    def key(self, name):
        from selenium.webdriver.common.keys import Keys
        return getattr(Keys, name)

    def dialog_title(self):
        return (self.texts("dialog[open] h2") or [None])[0]

    def wait_for_dialog(self, title):
        self.wait(lambda: self.dialog_title() == title)

    # The page as a whole

    def test_ReadsAtEveryWidthLightAndDarkWithoutAWordOnTheConsole(self):
        backgrounds = set()
        for scheme in ("light", "dark"):
            for width in (360, 700, 1024, 1400):
                self.show_machine(width=width, scheme=scheme)
                for section in self.run_script(
                        "return [...document.querySelectorAll('main > section')].map((s) => s.id)"):
                    self.scroll_to("#" + section)
                self.assertLessEqual(self.run_script(
                    "return document.documentElement.scrollWidth"), width, (width, scheme))
                self.assert_silent()
            backgrounds.add(self.run_script("return getComputedStyle(document.body).backgroundColor"))
        self.assertEqual(len(backgrounds), 2)

    def test_TextStandsOutFromWhatIsBehindIt(self):
        contrast = """
            const canvas = document.createElement('canvas').getContext('2d');
            const light = (name) => {
              canvas.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(name);
              const part = (at) => {
                const value = parseInt(canvas.fillStyle.slice(at, at + 2), 16) / 255;
                return value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
              };
              return 0.2126 * part(1) + 0.7152 * part(3) + 0.0722 * part(5);
            };
            const [a, b] = [light(arguments[0]), light(arguments[1])];
            return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);"""
        for scheme in ("light", "dark"):
            self.show_machine(scheme=scheme)
            for text in ("--text", "--soft", "--faint", "--accent"):
                for behind in ("--page", "--panel", "--sunken"):
                    self.assertGreaterEqual(self.run_script(contrast, text, behind), 4.5,
                                            (scheme, text, behind))

    def test_CardsCountTheObjectsOfEachClass(self):
        self.show_machine()
        cards = dict(zip(self.texts(".card-name"), self.texts(".card-number")))
        self.assertEqual(cards, {"System": "1", "Disk drive": "4", "File system": "1", "Cpu": "1",
                                 "Cache": "2", "Lonely": "1"})
        self.assertEqual(self.one("#title").text, "box")
        self.assertEqual(self.one("#subtitle").text, "root/cimv2 · 10 objects")

    def test_ChartsShowUsedCapacityAndTheCachesOfAProcessor(self):
        self.show_machine()
        self.assertEqual(self.texts("#capacity .bar-text"), ["75% · 1024 B free of 4 KB"])
        bar, fill = self.one("#capacity .bar"), self.one("#capacity .fill")
        self.assertAlmostEqual(fill.size["width"] / bar.size["width"], 0.75, delta=0.02)
        self.assertEqual(len(self.all("#caches .level-1")), 4)
        self.assertEqual(len(self.all("#caches .level-2")), 1)
        self.assertEqual(len(self.all("#caches .core")), 4)

    def test_TheLastOfManyCoresSaysHowManyMoreThereAre(self):
        self.show(self.page_of("many", models.MACHINE.replace(
            "NumberOfCores = 4", "NumberOfCores = 64").replace(
            "NumberOfCaches = 4", "NumberOfCaches = 16")))
        self.assertEqual(self.texts("#caches .core"), [str(core) for core in range(15)] + ["+49"])
        self.assertEqual(len(self.all("#caches .level-1")), 16)

    def test_ANamespaceOfNothingSaysSo(self):
        self.show(self.page_of("empty", "// nothing\n"))
        self.assertEqual(self.texts(".empty"), ["The namespace is empty."])
        self.assert_silent()

    def test_ClassesWithoutObjectsAreATreeAlone(self):
        self.show(self.page_of("classes", models.QUALIFIERS + "class T { [Key] string Name; };"))
        self.assertEqual(self.texts(".empty"), ["The namespace holds classes, but no object."])
        self.assertEqual(self.texts("#classes a"), ["T"])
        self.assert_silent()

    # Tables

    def test_ColumnsSortByValueAndBackwardsWithWhatHasNoneLast(self):
        self.show_disks()
        self.assertEqual(self.rows(), ["disk1", "disk2", "disk9", "disk10"])
        size = DISKS + " [data-column=Size]"
        self.one(size).click()
        self.assertEqual(self.rows(), ["disk10", "disk2", "disk1", "disk9"])
        self.assertEqual(self.texts(DISKS + " td.number"), ["5 GB", "10 GB", "2 TB", "Unknown"])
        self.assertEqual(self.one(DISKS + " [aria-sort=ascending]").text, "Size")
        self.one(size).click()
        self.assertEqual(self.rows(), ["disk1", "disk2", "disk10", "disk9"])
        self.assertEqual(self.one(DISKS + " [aria-sort=descending]").text, "Size")

    def test_NamedValuesSortByTheirNames(self):
        self.show_disks()
        self.one(DISKS + " [data-column=State]").click()
        self.assertEqual(self.texts(DISKS + " tbody td:last-child"),
                         ["Asleep", "Failed", "Failed", "Zero"])

    def test_TheKeyboardSorts(self):
        self.show_disks()
        self.run_script("document.querySelector(arguments[0]).focus()",
                        DISKS + " [data-column=Size]")
        self.press(self.key("ENTER"))
        self.assertEqual(self.rows(), ["disk10", "disk2", "disk1", "disk9"])
        self.press(self.key("ENTER"))
        self.assertEqual(self.rows(), ["disk1", "disk2", "disk10", "disk9"])

    def test_FilterKeepsTheRowsThatHoldEveryWord(self):
        self.show_disks()
        self.type(DISKS + " .filter", "fail GB")
        self.assertEqual(self.rows(), ["disk2"])
        self.assertEqual(self.one(DISKS + " .status").text, "1 of 4")
        self.type(DISKS + " .filter", "nowhere")
        self.assertEqual(self.rows(), [])
        self.assertEqual(self.one(DISKS + " .status").text, "Nothing matches “nowhere”.")

    def test_EmptyColumnsAndRawValuesAreShownOnDemand(self):
        self.show_disks()
        head = DISKS + " thead th"
        self.assertEqual(self.texts(head), ["Object", "Size", "State"])
        columns, raw = self.all(DISKS + " .toggle")
        self.assertEqual(columns.text, "All 4 columns")
        columns.click()
        self.assertEqual(self.texts(head), ["Object", "Name", "Never", "Size", "State"])
        self.assertEqual(self.texts(DISKS + " .raw"), [])
        raw.click()
        self.assertEqual(self.texts(DISKS + " tr:nth-child(1) .raw"), ["2199023255552", "2"])

    def test_HeadersSayWhatTheirPropertyIs(self):
        self.show_disks()
        self.all(DISKS + " .toggle")[0].click()
        header = self.one(DISKS + " [data-column=Name]")
        self.assertEqual(header.get_attribute("title"), "What it is called.")

    def test_OneObjectIsASheet(self):
        self.show_machine()
        self.scroll_to("#class-T_System")
        self.assertEqual(self.texts("#class-T_System table"), [])
        self.assertEqual(self.texts("#class-T_System dt"), ["Location"])
        self.assertEqual(self.texts("#class-T_System dd"), ["rack 12"])

    # Objects and classes

    def test_AnObjectShowsItsPropertiesAndWhereItIsLinked(self):
        self.show_disks()
        self.one(DISKS + " tbody tr:nth-child(1) a").click()
        self.wait_for_dialog("disk1")
        self.assertEqual(self.one("dialog .path").text, 'T_DiskDrive.Name="disk1"')
        self.assertEqual(self.texts("dialog .dialog-body > .property .value"),
                         ["disk1", "2 TB", "Asleep"])
        self.assertEqual(self.texts("dialog .object span"), ["box"])
        self.all("dialog .property > summary")[1].click()
        self.wait(lambda: self.all("dialog .more code"))
        self.assertEqual(self.texts("dialog .more code"), ["2199023255552", "uint64"])
        self.assertIn("UNITS", self.texts("dialog .more dt"))
        self.one("dialog .object").click()
        self.wait_for_dialog("box")

    def test_TheAddressOpensAndTheBackButtonReturns(self):
        self.show_machine()
        address = self.driver.current_url
        self.driver.get(address + "#/object/" + "T_Cpu.Name%3D%22cpu%22")
        self.wait_for_dialog("cpu")
        self.assertEqual(self.texts("dialog .object span"), ["L1 cache", "L2 cache", "box"])
        self.all("dialog .object")[2].click()
        self.wait_for_dialog("box")
        self.driver.back()
        self.wait_for_dialog("cpu")
        self.press(self.key("ESCAPE"))
        self.wait_for_dialog(None)
        self.wait(lambda: "#" not in self.driver.current_url)
        self.driver.get(address + "#/object/nothing")
        self.wait_for_dialog("nothing")
        self.assert_silent()

    def test_AClassShowsWhatItInherits(self):
        self.show_machine()
        self.run_script("location.hash = '#/class/T_DiskDrive'")
        self.wait_for_dialog("Disk drive")
        self.assertEqual(self.texts("dialog .name"),
                         ["Namekey", "Never", "Size", "State", "Reset"])
        self.all("dialog .property > summary")[0].click()
        self.wait(lambda: self.all("dialog .more p"))
        self.assertEqual(self.texts("dialog .more p"), ["What it is called."])
        self.assertEqual(self.texts("dialog .more a"), ["T_Element"])
        self.assertEqual(self.texts("dialog code.value")[-1], "uint32 (uint16 Mode)")

    def test_TheTreesOpen(self):
        self.show_machine()
        self.assertIn("disk10", self.texts("#tree a"))
        self.assertEqual(self.texts("#classes .tree .tree a"),
                         ["T_Cache", "T_Cpu", "T_DiskDrive", "T_FileSystem", "T_Lonely",
                          "T_System"])
        cpu = next(summary for summary in self.all("#tree summary") if "cpu" in summary.text)
        self.assertEqual(len(self.all("#tree details[open]")), 2)
        cpu.click()
        self.assertEqual(len(self.all("#tree details[open]")), 1)

    # Search

    def test_SearchFindsObjectsAndClassesByTheKeyboardAlone(self):
        self.show_machine()
        self.press("/")
        self.assertEqual(self.run_script("return document.activeElement.id"), "search")
        self.press("disk")
        self.wait(lambda: self.all(".option"))
        self.assertEqual(self.texts(".option span"), ["disk1", "disk2", "disk9", "disk10",
                                                      "T_DiskDrive", "box – disk1",
                                                      "box – disk2", "box – disk9",
                                                      "box – disk10"])
        self.press(self.key("ARROW_DOWN"), self.key("ARROW_DOWN"), self.key("ARROW_UP"))
        self.assertEqual(self.texts(".option[aria-selected=true] span"), ["disk2"])
        self.press(self.key("ENTER"))
        self.wait_for_dialog("disk2")
        self.press(self.key("ESCAPE"))
        self.wait_for_dialog(None)

    def test_SearchThatFindsNothingSaysSo(self):
        self.show_machine()
        self.type("#search", "nowhere")
        self.wait(lambda: self.texts("#found .note") == ["Nothing matches “nowhere”."])

    def test_WhatIsFoundLiesAboveAllElse(self):
        for width in (360, 1400):
            self.show_machine(width=width)
            self.type("#search", "disk")
            self.wait(lambda: self.all(".option"))
            self.assertTrue(self.run_script("""
                return [...document.querySelectorAll('.option')].every((option) => {
                  const {left, top, height} = option.getBoundingClientRect();
                  return option.contains(document.elementFromPoint(left + 20, top + height / 2));
                });"""), width)

    # Graph

    def show_graph(self):
        self.show_machine()
        self.scroll_to("#graph")
        self.wait(lambda: self.all("#graph .node"))

    def node(self, title):
        return self.one(f"#graph .node[aria-label='{title}']")

    def test_ANodeLeadsToItsObject(self):
        self.show_graph()
        self.assertEqual(len(self.all("#graph .node")), 9)
        self.assertEqual(len(self.all("#graph .line")), 8)
        from selenium.webdriver.common.by import By
        self.node("Disk drive disk2").find_element(By.TAG_NAME, "circle").click()
        self.wait_for_dialog("disk2")
        self.assert_silent()

    def test_NoNameInTheGraphCoversAnotherOrLeavesIt(self):
        boxes = """
            return [...document.querySelectorAll('#graph .node text')]
              .filter((text) => getComputedStyle(text).visibility === 'visible')
              .map((text) => text.getBoundingClientRect()).map((r) => [r.left, r.top, r.right, r.bottom]);"""
        for width in (360, 700, 1400):
            self.show(self.page_of("crowded", models.large(12)), width=width)
            self.scroll_to("#graph")
            self.wait(lambda: self.all("#graph .node"))
            shown = self.run_script(boxes)
            self.assertGreaterEqual(len(shown), 4, width)
            frame = self.run_script(
                "const r = document.querySelector('#graph .frame').getBoundingClientRect();"
                "return [r.left, r.top, r.right, r.bottom];")
            for at, (left, top, right, bottom) in enumerate(shown):
                self.assertTrue(frame[0] <= left and right <= frame[2] and frame[1] <= top and
                                bottom <= frame[3], (width, left, right, frame))
                for other in shown[:at]:
                    covered = (min(right, other[2]) - max(left, other[0]) > 2 and
                               min(bottom, other[3]) - max(top, other[1]) > 3)
                    self.assertFalse(covered, (width, (left, top, right, bottom), other))

    def test_ArrowKeysGoFromNodeToNode(self):
        self.show_graph()
        self.assertEqual(len(self.all("#graph .node[tabindex='0']")), 1)
        self.run_script("document.querySelector('#graph .node[tabindex=\"0\"]').focus()")
        focused = "return document.activeElement.getAttribute('aria-label')"
        seen = {self.run_script(focused)}
        for key in ("ARROW_LEFT", "ARROW_UP", "ARROW_RIGHT", "ARROW_DOWN") * 3:
            self.press(self.key(key))
            seen.add(self.run_script(focused))
        self.assertGreater(len(seen), 2)
        self.assertEqual(len(self.all("#graph .node[tabindex='0']")), 1)
        title = self.run_script("return document.activeElement.querySelector('text').textContent")
        self.press(self.key("ENTER"))
        self.wait_for_dialog(title)

    def test_TheLegendHidesAClass(self):
        self.show_graph()
        next(button for button in self.all("#graph .legend button")
             if button.text == "Disk drive").click()
        self.assertEqual(len(self.all("#graph .node")), 5)
        self.assertEqual(self.run_script("return document.activeElement.textContent"), "Disk drive")
        self.press(self.key("ENTER"))
        self.assertEqual(len(self.all("#graph .node")), 9)

    def test_AnObjectIsShownWithWhatSurroundsIt(self):
        self.show_machine()
        self.run_script("location.hash = '#/object/' + encodeURIComponent('T_Cpu.Name=\"cpu\"')")
        self.wait_for_dialog("cpu")
        self.one("dialog .actions button").click()
        self.wait(lambda: self.all("#graph .node"))
        self.assertIn("around cpu", self.one("#graph [role=status]").text)
        self.assertEqual(self.run_script("return document.activeElement.getAttribute('aria-label')"),
                         "Cpu cpu")

    def test_ButtonsZoom(self):
        self.show_graph()
        width = "return document.querySelector('#graph circle').getBoundingClientRect().width"
        before = self.run_script(width)
        self.one("#graph [aria-label=Larger]").click()
        self.assertAlmostEqual(self.run_script(width) / before, 1.4, delta=0.05)
        self.one("#graph [aria-label='Whole picture']").click()
        self.assertAlmostEqual(self.run_script(width) / before, 1, delta=0.05)

    # What an inventory may hold

    def test_HostileTextIsTextWhereverItIsShown(self):
        self.show(self.page_of("hostile", models.HOSTILE))
        for section in ("#graph", "#class-constructor", "#class-prototype_valueOf"):
            self.scroll_to(section)
        for toggle in self.all(".toggle"):
            toggle.click()
        links = self.run_script(
            "return [...new Set([...document.querySelectorAll('a[href^=\"#/\"]')]"
            ".map((a) => a.getAttribute('href')))]")
        self.assertGreaterEqual(len(links), 9)
        for link in links:
            self.run_script("location.hash = arguments[0]", link)
            self.wait(lambda: self.dialog_title() is not None)
            self.assertNotEqual(self.texts("dialog .kind"), ["Not in this report"], link)
            self.run_script(
                "for (const d of document.querySelectorAll('dialog details')) d.open = true")
            self.assert_no_markup()
            self.run_script("document.getElementById('details').close()")
            self.wait_for_dialog(None)
        self.type("#search", "owned")
        self.wait(lambda: self.all(".option"))
        self.assert_no_markup()
        self.assertEqual(self.one("#class-constructor tbody tr:nth-child(2) a").text,
                         '<img src=x onerror="owned = 1">')
        self.assert_silent()

    def assert_no_markup(self):
        self.assertEqual(self.all("img, b:not(.bar-text b), i, iframe, object"), [])
        self.assertEqual(len(self.all("script")), 3)
        self.assertIsNone(self.run_script("return window.owned"))

    def test_WhatComesInLaterCannotRun(self):
        self.show_machine()
        self.run_script("""
            const script = document.createElement('script');
            script.textContent = 'window.owned = 1';
            document.body.append(script);
            document.body.insertAdjacentHTML('beforeend', '<img src="x" onerror="owned = 1">');""")
        self.wait(lambda: len(self.messages) >= 2)
        self.assertIsNone(self.run_script("return window.owned"))
        self.assertTrue(all("Content Security Policy" in entry for entry in self.messages))

    @property
    def messages(self):
        self.seen = getattr(self, "seen", []) + [
            entry["message"] for entry in self.driver.get_log("browser")]
        return self.seen

    def test_TensOfThousandsOfObjectsAreShownByThePage(self):
        parts = 20000
        self.show(self.page_of("large", models.large(parts)))
        self.scroll_to("#class-T_Part")
        rows = "#class-T_Part tbody th"
        self.assertEqual(len(self.texts(rows)), 25)
        self.assertEqual(self.one("#class-T_Part .status").text, "1–25 of 20,000 objects")
        self.one("#class-T_Part [data-column=Number]").click()
        self.assertEqual(self.texts("#class-T_Part tbody tr td:nth-child(2)"),
                         [str(number) for number in range(25)])
        self.all("#class-T_Part .pager button")[1].click()
        self.assertEqual(self.texts("#class-T_Part tbody tr td:nth-child(2)"),
                         [str(number) for number in range(25, 50)])
        self.type("#class-T_Part .filter", "part1999")
        self.assertEqual(self.one("#class-T_Part .status").text, "11 of 20,000")
        self.scroll_to("#graph")
        self.wait(lambda: self.all("#graph .node"))
        self.assertLessEqual(len(self.all("#graph .node")), 200)
        self.assertIn("of 20,001 linked objects", self.one("#graph .note").text)
        self.assertLess(self.run_script("return document.querySelectorAll('*').length"), 3000)
        self.assert_silent()


if __name__ == "__main__":
    if sys.argv[2:] not in ([], ["served"]) or len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    Report.havhost = sys.argv[1]
    Report.served = len(sys.argv) == 3
    sys.exit(browser.run(Report))
