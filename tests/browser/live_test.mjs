// The status page keeps its values fresh by itself. The browser's clock stands unless it is moved,
// and what is asked for is answered here, so that no test waits.
import assert from "node:assert/strict";
import { after, test } from "node:test";

import { languages, Launch, StoreStorage, View, Watch } from "./support/browser.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { Site } from "./support/site.mjs";

const site = await Site.Started();
const browser = await Launch();
const fragment = "**/status?part=values*";

after(async () => {
  await browser.close();
  await site.Remove();
});

// The status page, whose clock stands. It is closed when the test `t` is over.
async function Open(t, others = {}) {
  const context = await browser.newContext(View(site, others));
  t.after(() => context.close());
  const page = await context.newPage();
  await page.clock.install({ time: 0 });
  await page.clock.pauseAt(3600000);
  await page.goto("/status");
  return page;
}

// Answers each request for the values by `Answer`, and gives the list of what was asked for.
async function Answered(page, Answer) {
  const asked = [];
  await page.route(fragment, (route) => {
    asked.push(route.request().url());
    return Answer(route, asked.length);
  });
  return asked;
}

function Fulfil(route, text) {
  return route.fulfill({
    contentType: "text/html; charset=utf-8", body: `<div id="live"><p>${text}</p></div>`
  });
}

// Moves the clock to the moment of a request, and no further: `before` milliseconds are not enough.
async function PassUntilAsked(page, asked, before) {
  const count = asked.length;
  await page.clock.runFor(before - 1);
  assert.equal(asked.length, count, `asked before ${before} ms were over`);
  const request = page.waitForRequest(fragment);
  await page.clock.runFor(1);
  await request;
}

// The note is emptied, so that it is seen when it is written anew.
async function PassUntilFailed(page, asked, before) {
  const note = page.locator("#live_note");
  await note.evaluate((one) => one.replaceChildren());
  await PassUntilAsked(page, asked, before);
  await note.filter({ hasText: /./ }).waitFor();
}

// What a browser does with a tab that comes to the front or goes behind another one.
function Turn(page, isHidden) {
  return page.evaluate((hidden) => {
    Object.defineProperty(document, "hidden", { configurable: true, value: hidden });
    document.dispatchEvent(new Event("visibilitychange"));
  }, isHidden);
}

test("new values stand in the place of the old ones every five seconds", async (t) => {
  const page = await Open(t);
  const asked = await Answered(page, (route, count) => Fulfil(route, `fresh ${count}`));
  await page.evaluate(() => {
    window.isSamePage = true;
  });
  for (const count of [1, 2, 3]) {
    await PassUntilAsked(page, asked, 5000);
    await page.getByText(`fresh ${count}`, { exact: true }).waitFor();
    assert.equal(await page.locator("#live > *").count(), 1);
  }
  assert.ok(await page.evaluate(() => window.isSamePage));
});

for (const language of languages) {
  test(`the values alone are asked for, in the language of the page: ${language.locale}`, async (t) => {
    const page = await Open(t, { language });
    const heading = await page.locator("#live h3").first().textContent();
    const urls = [];
    page.on("request", (request) => urls.push(request.url().slice(site.address.length)));
    const watch = new Watch(page);
    await page.locator("#live").evaluate((live) => live.replaceChildren());
    await page.clock.runFor(5000);
    await page.locator("#live h3", { hasText: heading.trim() }).first().waitFor();
    assert.deepEqual(urls, [`/status?part=values&LANGUAGE=${language.code}`]);
    assert.equal(await page.locator("#live #live, #live nav, #live script").count(), 0);
    ExpectNone(watch.Take());
  });
}

test("what was changed elsewhere is shown without loading the page anew", async (t) => {
  const page = await Open(t);
  const storage = page.locator("#live h3", { hasText: "Storage" });
  const settings = await page.context().newPage();
  for (const isShown of [false, true]) {
    await StoreStorage(settings, isShown);
    assert.equal(await storage.count(), isShown ? 0 : 1);
    await page.clock.runFor(5000);
    await storage.waitFor({ state: isShown ? "attached" : "detached" });
  }
});

test("nothing is asked for in a tab that is hidden, and at once when it is shown", async (t) => {
  const page = await Open(t);
  const asked = await Answered(page, (route, count) => Fulfil(route, `fresh ${count}`));
  await Turn(page, true);
  await page.clock.runFor(600000);
  assert.deepEqual(asked, []);
  await Turn(page, false);
  await page.getByText("fresh 1", { exact: true }).waitFor();
  assert.equal(asked.length, 1);
  await PassUntilAsked(page, asked, 5000);
  await page.getByText("fresh 2", { exact: true }).waitFor();
});

for (const [what, Fail] of [
  ["no answer", (route) => route.abort()],
  ["a refusal", (route) => route.fulfill({ status: 500, body: "<div id=live>refused</div>" })]]) {
  test(`${what} is said, and asked about less and less often`, async (t) => {
    const page = await Open(t);
    const shown = await page.locator("#live").innerHTML();
    let isFailing = true;
    const asked = await Answered(page, (route) => isFailing ? Fail(route) : Fulfil(route, "fresh"));
    for (const delay of [5000, 10000, 20000, 40000, 80000, 80000]) {
      await PassUntilFailed(page, asked, delay);
      assert.equal((await page.getByRole("status").textContent()).trim(),
        "The device does not answer. It is asked again soon.");
      assert.equal(await page.locator("#live").innerHTML(), shown);
    }
    isFailing = false;
    await PassUntilAsked(page, asked, 80000);
    await page.getByText("fresh", { exact: true }).waitFor();
    assert.equal(await page.getByRole("status").textContent(), "");
    await PassUntilAsked(page, asked, 5000);
  });
}

test("the link asks at once, and loads no page", async (t) => {
  const page = await Open(t);
  const asked = await Answered(page, (route) => Fulfil(route, "fresh"));
  await page.getByRole("link", { name: "Refresh" }).click();
  await page.getByText("fresh", { exact: true }).waitFor();
  assert.equal(asked.length, 1);
  assert.equal(new URL(page.url()).search, "");
  await page.getByRole("heading", { name: "Status", exact: true }).waitFor();
});
