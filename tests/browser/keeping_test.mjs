// What a reader has chosen stays: the settings over a restart of the server, the language over pages
// and over a restart of the browser, the colours over pages.
import assert from "node:assert/strict";
import { mkdtemp, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";

import { chromium } from "playwright-core";

import { languages, Launch, launchOptions, themes, View } from "./support/browser.mjs";
import { Site } from "./support/site.mjs";

const site = await Site.Started();
const names = ["show_memory", "show_interfaces", "show_storage"];
const browser = await Launch();

after(async () => {
  await browser.close();
  await site.Remove();
});

async function Shown(page) {
  const boxes = {};
  for (const name of names) {
    boxes[name] = await page.locator(`input[name=${name}]`).isChecked();
  }
  return boxes;
}

async function Store(page, wanted, isLasting) {
  await page.goto("/settings");
  for (const name of names) {
    await page.locator(`input[name=${name}]`).setChecked(wanted[name]);
  }
  await page.locator("input[name=lasting]").setChecked(isLasting);
  await page.getByRole("button").click();
  await page.waitForURL("**/settings?stored=yes");
}

for (const [isLasting, wanted] of [
  [true, { show_memory: false, show_interfaces: true, show_storage: false }],
  [false, { show_memory: true, show_interfaces: false, show_storage: true }]]) {
  test(`settings stay when the server starts anew: lasting ${isLasting}`, async () => {
    const context = await browser.newContext(View(site, {}));
    const page = await context.newPage();
    await Store(page, wanted, isLasting);
    await site.Stop();
    await site.Start();
    await page.goto("/settings");
    assert.deepEqual(await Shown(page), wanted);
    await page.goto("/status");
    for (const [name, heading] of
      [["show_memory", "Memory"], ["show_interfaces", "Network interfaces"],
        ["show_storage", "Storage"]]) {
      assert.equal(await page.locator("h3", { hasText: heading }).count(), wanted[name] ? 1 : 0, name);
    }
    await context.close();
  });
}

test("a form that was opened before the server started anew is refused in words", async () => {
  const context = await browser.newContext(View(site, {}));
  const page = await context.newPage();
  await page.goto("/settings");
  const before = await Shown(page);
  await site.Stop();
  await site.Start();
  await page.locator("input[name=show_memory]").setChecked(!before.show_memory);
  await page.getByRole("button").click();
  await page.getByRole("heading", { name: "Not accepted" }).waitFor();
  await page.goto("/settings");
  assert.deepEqual(await Shown(page), before);
  await context.close();
});

async function LanguageOf(page, path) {
  await page.goto(path);
  return page.locator("html").getAttribute("lang");
}

test("the language stays over pages and over a restart of the browser", async (t) => {
  const folder = await mkdtemp(join(tmpdir(), "quillo-profile-"));
  const Open = () =>
    chromium.launchPersistentContext(folder, { ...launchOptions, ...View(site, {}) });
  let context = await Open();
  t.after(async () => {
    await context.close();
    await rm(folder, { recursive: true });
  });
  let page = context.pages()[0];
  assert.equal(await LanguageOf(page, "/status"), "en");
  for (const { code } of [...languages].reverse()) {
    await page.goto("/language");
    await page.locator(`.choices a[lang=${code}]`).click();
    await page.locator(`html[lang=${code}]`).waitFor();
    for (const path of await site.Paths()) {
      assert.equal(await LanguageOf(page, path), code, path);
    }
    await context.close();
    context = await Open();
    page = context.pages()[0];
    assert.equal(await LanguageOf(page, "/status"), code);
  }
});

// Whether the page's ground is dark.
async function Ground(page) {
  const colour = await page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  return Math.max(...colour.match(/\d+/g).map(Number)) < 60 ? "dark" : "light";
}

for (const theme of themes) {
  test(`the colours are those that were chosen, else the system's: ${theme}`, async () => {
    const context = await browser.newContext(View(site, { theme }));
    const page = await context.newPage();
    for (const [chosen, ground] of [["light", "light"], ["dark", "dark"], ["", theme]]) {
      await page.goto("/settings");
      await page.locator("select[name=theme]").selectOption(chosen);
      await page.getByRole("button").click();
      await page.waitForURL("**/settings?stored=yes");
      assert.equal(await page.locator("select[name=theme]").inputValue(), chosen);
      for (const path of await site.Paths()) {
        await page.goto(path);
        assert.equal(await Ground(page), ground, `${path}, chosen: '${chosen}'`);
      }
      await page.emulateMedia({ media: "print" });
      assert.equal(await Ground(page), "light", `on paper, chosen: '${chosen}'`);
      await page.emulateMedia({ media: "screen" });
    }
    await context.close();
  });
}
