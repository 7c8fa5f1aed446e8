// Whatever readers and other programs send is shown as text, if it is shown at all: in a form, an
// address, a cookie or a header.
import assert from "node:assert/strict";
import { after, test } from "node:test";

import { ExpectNone } from "./support/faults.mjs";
import { Inspector } from "./support/parts.mjs";
import { Site } from "./support/site.mjs";
import { Texts, WhyNot } from "./support/texts.mjs";

const skip = WhyNot();
const texts = skip ? [] : await Texts();
const site = await Site.Started();
const paths = [...(await site.Paths()), "/nothing"];
const inspector = await Inspector.Of(site);

after(async () => {
  await inspector.Close();
  await site.Remove();
});

// The text in every argument that a page reads, and in the name of one more.
function Query(text) {
  const part = encodeURIComponent(text);
  return `?view=${part}&LANGUAGE=${part}&text=${part}&level=${part}&page=${part}&${part}`;
}

function Shortened(text) {
  return JSON.stringify(text.length > 60 ? `${text.slice(0, 60)}…` : text);
}

// The bytes of the text as a header field can carry them.
function AsField(text) {
  return Buffer.from(text).toString("latin1").replaceAll(/[\x00-\x1f\x7f]/g, " ").trim();
}

// Asks for a page with the text in every place, and gives the page. With a `session` it sends the
// settings.
async function Ask(path, text, session) {
  const field = AsField(text);
  const part = encodeURIComponent(text);
  const cookies = `LANGUAGE=${part}; THEME=${part}${session ? `; ${session.cookie}` : ""}`;
  const headers = { "Accept-Language": field, "User-Agent": field, Cookie: cookies };
  const form = session && new URLSearchParams({
    [session.name]: session.token, lasting: text, show_memory: text, show_interfaces: text,
    show_storage: text, [text]: text
  });
  const answer = await fetch(site.address + path + Query(text), {
    method: session ? "POST" : "GET",
    body: form,
    headers: session ? { ...headers, Origin: site.address } : headers
  });
  return answer.text();
}

// What lets a form in: see the field in every form.
async function Session() {
  const shown = await fetch(`${site.address}/settings`);
  const [, name, token] = (await shown.text()).match(/name="(\w+)" type="hidden" value="(\w+)"/);
  return { name, token, cookie: shown.headers.get("set-cookie").split(";")[0] };
}

// Takes each text to `Sent`, and has the browser read what comes back.
async function FaultsOfEachText(Sent) {
  const page = await inspector.Page(site.address);
  await page.goto("/about");
  const faults = [];
  for (let i = 0; i < texts.length; i += 32) {
    const some = texts.slice(i, i + 32);
    const answers = await Promise.all(some.map((text, index) => Sent(text, i + index)));
    (await inspector.FaultsOf(page, answers)).forEach((found, index) => {
      faults.push(...found.map((fault) => `${Shortened(some[index])}: ${fault}`));
    });
  }
  await page.context().close();
  return faults;
}

test("each text that is sent in a form makes nothing but text", { skip }, async () => {
  const session = await Session();
  let refused = 0;
  ExpectNone(await FaultsOfEachText(async (text) => {
    const html = await Ask("/settings", text, session);
    refused += html.includes('aria-invalid="true"') ? 1 : 0;
    return html;
  }));
  assert.ok(refused > texts.length / 2, `${refused} forms of ${texts.length} reached the page`);
});

test("each text that is asked for makes nothing but text", { skip }, async () => {
  ExpectNone(await FaultsOfEachText((text, index) => Ask(paths[index % paths.length], text)));
});

// Several texts in one, as long as an address can be.
function Batches() {
  const batches = [""];
  for (const text of texts) {
    const both = `${batches.at(-1)} ${text}`;
    if (encodeURIComponent(both).length <= 1200) {
      batches[batches.length - 1] = both;
    } else {
      batches.push(text);
    }
  }
  return batches;
}

// Run in the page with the settings' form: sends it with the text in every place.
function SendEverywhere([text, query]) {
  const form = document.forms.settings;
  document.cookie = `LANGUAGE=${encodeURIComponent(text)}; Path=/settings`;
  form.action = `/settings${query}`;
  for (const box of form.querySelectorAll("input[type=checkbox]")) {
    box.value = text;
    box.checked = true;
  }
  form.submit();
}

async function Visit(page, text) {
  if (await page.locator("form[name=settings]").count() === 0) {
    await page.goto("/settings");
  }
  await Promise.all([page.waitForEvent("load"), page.evaluate(SendEverywhere, [text, Query(text)])]);
}

for (const [where, Go] of [
  ["sent in a form", Visit],
  ["asked for", (page, text, index) => page.goto(paths[index % paths.length] + Query(text))]]) {
  test(`nothing that is ${where} runs a script, opens a window or loads anything`, { skip },
    async () => {
      const page = await inspector.Page(site.address);
      const faults = [];
      for (const [index, text] of Batches().entries()) {
        await Go(page, text, index);
        faults.push(...(await inspector.Faults(page)).map((fault) => `${Shortened(text)}: ${fault}`));
      }
      await page.context().close();
      ExpectNone(faults);
    });
}
