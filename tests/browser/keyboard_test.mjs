// All of it can be done with the keyboard alone, and one always sees where one is.
import assert from "node:assert/strict";
import { after, test } from "node:test";

import { languages, Launch, SendBadSettings, themes, View } from "./support/browser.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { Site } from "./support/site.mjs";

const site = await Site.Started();
const paths = await site.AllPaths();
const browser = await Launch();

after(async () => {
  await browser.close();
  await site.Remove();
});

// Run in the page: numbers all elements in their order, and gives the numbers of those that a
// keyboard has to reach.
function NumberElements() {
  const controls = "a[href], button, input:not([type=hidden]), select, textarea, summary";
  const IsChosen = (element) => element.type !== "radio" || element.checked;
  const all = [...document.querySelectorAll("*")];
  all.forEach((element, number) => {
    element.dataset.number = number;
  });
  return [...document.querySelectorAll(controls)]
    .filter((element) => !element.disabled && element.checkVisibility() && IsChosen(element))
    .map((element) => Number(element.dataset.number));
}

// Run in the page: what has the focus; null when nothing has.
function Focused() {
  const element = document.activeElement;
  if (element === document.body) {
    return null;
  }
  const { top, bottom, left, right } = element.getBoundingClientRect();
  return {
    number: Number(element.dataset.number),
    tag: element.tagName.toLowerCase(),
    text: (element.textContent || element.name).trim().slice(0, 40),
    isInView: bottom > 0 && right > 0 && top < innerHeight && left < innerWidth,
    isScroller: element.scrollWidth > element.clientWidth || element.scrollHeight > element.clientHeight
  };
}

// The stops that the tabulator key makes, from the first to the last of the page.
async function Stops(page, atEach) {
  const stops = [];
  for (;;) {
    await page.keyboard.press("Tab");
    const stop = await page.evaluate(Focused);
    if (stop === null || stop.number === stops[0]?.number) {
      return stops;
    }
    stops.push(stop);
    await atEach?.(stop);
  }
}

async function Open(path) {
  const context = await browser.newContext(View(site, {}));
  const page = await context.newPage();
  await page.goto(path);
  return page;
}

function Named(stop) {
  return `${stop.tag} ${stop.number} '${stop.text}'`;
}

for (const [language, width] of [[languages[0], 1280], [languages[1], 320], [languages[2], 1280]]) {
  test(`the tabulator key reaches all of a page in its order: ${language.locale}, ${width} px`,
    async () => {
      const context = await browser.newContext(View(site, { language, width }));
      const page = await context.newPage();
      const faults = [];
      for (const path of paths) {
        await page.goto(path);
        const wanted = new Set(await page.evaluate(NumberElements));
        assert.ok(wanted.size > 0, path);
        let last = -1;
        for (const stop of await Stops(page)) {
          if (stop.number < last || !stop.isInView || !(wanted.delete(stop.number) || stop.isScroller)) {
            faults.push(`${path}: ${Named(stop)} after ${last}${stop.isInView ? "" : ", out of view"}`);
          }
          last = stop.number;
        }
        faults.push(...[...wanted].map((number) => `${path}: the element ${number} is not reached`));
      }
      await context.close();
      ExpectNone(faults);
    });
}

// The stops that look the same with the focus and without it.
async function UnseenStops(page) {
  const unseen = [];
  await page.evaluate(NumberElements);
  await Stops(page, async (stop) => {
    const element = page.locator(`[data-number="${stop.number}"]`);
    const { x, y, width, height } = await element.boundingBox();
    const top = Math.max(0, y - 6);
    const clip = { x: Math.max(0, x - 6), y: top, width: width + 12, height: Math.min(height + 12, 800 - top) };
    const focused = await page.screenshot({ clip });
    await element.evaluate((one) => one.blur());
    if (focused.equals(await page.screenshot({ clip }))) {
      unseen.push(`${new URL(page.url()).pathname}: ${Named(stop)}`);
    }
  });
  return unseen;
}

for (const theme of themes) {
  test(`what has the focus looks different: ${theme}`, async () => {
    const context = await browser.newContext(View(site, { theme }));
    const page = await context.newPage();
    const faults = [];
    // What stands in the gallery has the colours of the other pages.
    const shown = (await site.Paths()).filter((path) => theme === themes[0] || path !== "/widgets");
    for (const path of shown) {
      await page.goto(path);
      faults.push(...(await UnseenStops(page)));
    }
    await SendBadSettings(page, "show_memory");
    faults.push(...(await UnseenStops(page)));
    await context.close();
    ExpectNone(faults);
  });
}

test("a focus that cannot be seen is found", async () => {
  const page = await Open("/language");
  await page.evaluate(() => {
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(".choices a { outline: none !important; }");
    document.adoptedStyleSheets = [sheet];
  });
  assert.equal((await UnseenStops(page)).length, languages.length);
  await page.context().close();
});

// Presses the tabulator key until the element has the focus.
async function TabTo(page, locator) {
  const element = await locator.elementHandle();
  await page.evaluate(() => document.activeElement.blur());
  do {
    await page.keyboard.press("Tab");
    assert.notEqual(await page.evaluate(() => document.activeElement), null);
    assert.ok(await page.evaluate(() => document.activeElement !== document.body),
      "the element is not reached");
  } while (!(await element.evaluate((one) => one === document.activeElement)));
}

test("the first stop leads past the navigation bar", async () => {
  const page = await Open("/settings");
  await page.keyboard.press("Tab");
  await page.keyboard.press("Enter");
  assert.equal(await page.evaluate(() => document.activeElement.id), "content");
  await page.keyboard.press("Tab");
  assert.equal(await page.evaluate(() => document.activeElement.name), "show_memory");
  await page.context().close();
});

test("a setting is changed and stored", async () => {
  const page = await Open("/settings");
  const box = page.locator("input[name=show_memory]");
  for (const isChecked of [false, true]) {
    await TabTo(page, box);
    await page.keyboard.press("Space");
    await TabTo(page, page.getByRole("button"));
    await page.keyboard.press("Enter");
    await page.waitForURL("**/settings?stored=yes");
    assert.equal(await page.getByRole("status").textContent().then((text) => text.trim()),
      "The settings were stored.");
    assert.equal(await box.isChecked(), isChecked);
    await page.goto("/status");
    assert.equal(await page.getByRole("heading", { name: "Memory", exact: true }).count(),
      isChecked ? 1 : 0);
    await page.goto("/settings");
  }
  await page.context().close();
});

test("another page, view and language are chosen", async () => {
  const page = await Open("/status");
  await TabTo(page, page.getByRole("link", { name: "Network", exact: true }));
  await page.keyboard.press("Enter");
  await page.waitForURL("**/network");
  await TabTo(page, page.getByRole("link", { name: "Traffic" }));
  await page.keyboard.press("Enter");
  await page.waitForURL("**/network?view=traffic");
  await TabTo(page, page.getByRole("link", { name: "Language" }));
  await page.keyboard.press("Enter");
  await page.waitForURL("**/language");
  await TabTo(page, page.getByRole("link", { name: "Deutsch" }));
  await page.keyboard.press("Enter");
  await page.waitForURL("**/language?LANGUAGE=de");
  assert.equal(await page.locator("html").getAttribute("lang"), "de");
  await page.context().close();
});

for (const name of ["show_memory", "show_interfaces", "show_storage"]) {
  test(`the first field that is wrong has the focus: ${name}`, async () => {
    const page = await Open("/settings");
    await SendBadSettings(page, name);
    const focused = await page.evaluate(() => ({
      name: document.activeElement.name,
      fault: document.getElementById(
        document.activeElement.getAttribute("aria-describedby"))?.textContent.trim(),
      isVisible: document.activeElement.matches(":focus-visible")
    }));
    assert.deepEqual(focused, {
      name, fault: "A box is checked or not: nothing else was expected.", isVisible: true
    });
    await page.context().close();
  });
}

test("colours that there are not have the focus when nothing else is wrong", async () => {
  const page = await Open("/settings");
  const choice = page.locator("select[name=theme]");
  await choice.evaluate((one) => {
    one.options[1].value = "blue";
    one.selectedIndex = 1;
  });
  await page.getByRole("button").click();
  await page.locator("select[name=theme][aria-invalid=true]").waitFor();
  assert.ok(await choice.evaluate((one) => one === document.activeElement));
  assert.ok(await page.getByText("There are no such colours.").isVisible());
  await page.context().close();
});
