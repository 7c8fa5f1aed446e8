// Every page in every language, theme and width: it fits, and the browser has nothing to complain of.
import assert from "node:assert/strict";
import { after, test } from "node:test";

import { languages, Launch, SendBadSettings, themes, View, Watch, widths } from "./support/browser.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { firstEntries, Site } from "./support/site.mjs";

const site = await Site.Started();
const paths = await site.AllPaths();
const browser = await Launch();

// Each side of where the style sheet arranges things anew, and a wide screen.
const otherWidths = [480, 481, 704, 705, 1023, 1024, 1216, 1217, 1920];

after(async () => {
  await browser.close();
  await site.Remove();
});

// Run in the page: what is wider than its place, each by a selector and by how much. What scrolls by
// itself may hold more than it shows; what hides the rest may not.
function Overflowing() {
  const Selector = (element) => {
    const own = element.tagName.toLowerCase() + (element.id ? `#${element.id}` : "") +
      [...element.classList].map((name) => `.${name}`).join("");
    return element.parentElement ? `${Selector(element.parentElement)} > ${own}` : own;
  };
  const Scrolls = (element) => ["auto", "scroll"].includes(getComputedStyle(element).overflowX);
  const IsHeld = (element) =>
    element !== null && (Scrolls(element) || IsHeld(element.parentElement));
  const width = document.documentElement.clientWidth;
  const faults = [];
  for (const element of document.querySelectorAll("body, body *")) {
    const box = element.getBoundingClientRect();
    if (!IsHeld(element) && box.width > 0 && (box.left < -0.5 || box.right > width + 0.5)) {
      faults.push(`${Selector(element)} from ${box.left} to ${box.right} of ${width}`);
    }
    const isCut = ["hidden", "clip"].includes(getComputedStyle(element).overflowX);
    if (isCut && element.scrollWidth > element.clientWidth) {
      faults.push(`${Selector(element)} cuts ${element.scrollWidth} to ${element.clientWidth}`);
    }
  }
  const { scrollWidth } = document.documentElement;
  return scrollWidth > width ? [`the page: ${scrollWidth} of ${width}`, ...faults] : faults;
}

// Shown by what the browser itself says of a page that there is not.
function IsExpected(path, fault) {
  return path === "/nothing" && fault.includes("404");
}

// The faults of the page that is shown, at every width and on paper.
async function FaultsInEveryView(page, allWidths) {
  const faults = [];
  const Look = async (where) => {
    for (const fault of await page.evaluate(Overflowing)) {
      faults.push(`${where}: ${fault}`);
    }
  };
  for (const width of allWidths) {
    await page.setViewportSize({ width, height: 800 });
    await Look(`${width} px`);
  }
  await page.setViewportSize({ width: 700, height: 1000 });
  await page.emulateMedia({ media: "print" });
  await Look("on paper");
  await page.emulateMedia({ media: "screen" });
  return faults;
}

for (const language of languages) {
  for (const theme of themes) {
    test(`every page fits and is in order: ${language.locale}, ${theme}`, async () => {
      const context = await browser.newContext(View(site, { language, theme }));
      const page = await context.newPage();
      const watch = new Watch(page);
      const allWidths = theme === themes[0] ? [...widths, ...otherWidths] : widths;
      const faults = [];
      for (const path of paths) {
        await page.goto(path);
        faults.push(...(await FaultsInEveryView(page, allWidths)).map((fault) => `${path} at ${fault}`));
        faults.push(...watch.Take().filter((fault) => !IsExpected(path, fault))
          .map((fault) => `${path}: ${fault}`));
      }
      await context.close();
      ExpectNone(faults);
    });
  }
}

for (const width of widths) {
  test(`what is wrong with a form is said within ${width} px`, async () => {
    for (const language of languages) {
      const context = await browser.newContext(View(site, { language, width }));
      const page = await context.newPage();
      await SendBadSettings(page, "show_memory");
      ExpectNone(await page.evaluate(Overflowing));
      await context.close();
    }
  });
}

for (const language of languages) {
  test(`a page says its language and direction: ${language.locale}`, async () => {
    const context = await browser.newContext(View(site, { language }));
    const page = await context.newPage();
    for (const path of await site.Paths()) {
      await page.goto(path);
      const said = await page.evaluate(() => ({
        code: document.documentElement.lang,
        direction: getComputedStyle(document.body).direction
      }));
      assert.deepEqual(said, { code: language.code, direction: language.direction }, path);
    }
    await context.close();
  });
}

test("the theme is the reader's", async () => {
  const grounds = {};
  for (const theme of themes) {
    const context = await browser.newContext(View(site, { theme }));
    const page = await context.newPage();
    await page.goto("/status");
    const colour = await page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    grounds[theme] = Math.max(...colour.match(/\d+/g).map(Number));
    await context.close();
  }
  assert.ok(grounds.light > 200 && grounds.dark < 60, JSON.stringify(grounds));
});

test("what does not fit is found", async () => {
  const context = await browser.newContext(View(site, { width: 320 }));
  const page = await context.newPage();
  await page.goto("/about");
  await page.evaluate(() => {
    document.querySelector("h2").style.inlineSize = "400px";
  });
  const faults = await page.evaluate(Overflowing);
  assert.ok(faults.some((fault) => fault.includes("> h2")), faults.join("\n"));
  await context.close();
});

test("no page had anything to log", async () => {
  assert.equal(await site.Log(), firstEntries);
});
