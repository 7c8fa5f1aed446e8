// What a page is made of. Text alone makes no element and no attribute, leads nowhere and calls
// nothing: a part that harmless texts do not make came out of a text.
import { Launch, SendBadSettings, View, Watch } from "./browser.mjs";

// Run in every page before its own scripts: notes the calls by which an injected script shows itself.
function NoteCalls() {
  window.quilloCalls = [];
  for (const name of ["alert", "confirm", "prompt", "print", "open"]) {
    window[name] = (...given) => window.quilloCalls.push(`calls ${name}(${given})`);
  }
  document.addEventListener("securitypolicyviolation", (event) =>
    window.quilloCalls.push(`violates ${event.violatedDirective}: ${event.blockedURI}`));
}

// Run in a page: its parts, or those of each HTML text in `sources`.
function PartsOf(sources) {
  const Parts = (tree) => {
    const parts = new Set();
    for (const element of tree.querySelectorAll("*")) {
      parts.add([element.tagName, ...[...element.attributes].map(({ name }) => name).sort()].join(" "));
      for (const name of ["href", "src", "action", "formaction"]) {
        const address = element.getAttribute(name) ?? "/";
        if (!/^[/#](?!\/)/.test(address)) {
          parts.add(`${element.tagName} leads to ${address}`);
        }
      }
      if (element.tagName === "SCRIPT" && !element.src) {
        parts.add(`script ${element.textContent.replace(/\.show_\w+\./, ".FIELD.").trim()}`);
      }
    }
    return [...parts];
  };
  return sources
    ? sources.map((source) => Parts(new DOMParser().parseFromString(source, "text/html")))
    : [[...Parts(document), ...window.quilloCalls]];
}

// A browser that knows what the pages of a site are made of while they are given nothing strange.
export class Inspector {
  static async Of(site) {
    const inspector = new Inspector();
    inspector.browser = await Launch();
    inspector.known = new Set();
    const page = await inspector.Page(site.address);
    const Learn = async () =>
      (await page.evaluate(PartsOf))[0].forEach((part) => inspector.known.add(part));
    for (const path of await site.AllPaths()) {
      await page.goto(path);
      await Learn();
    }
    await SendBadSettings(page, "show_memory");
    await Learn();
    await page.context().close();
    return inspector;
  }

  Close() {
    return this.browser.close();
  }

  // A page that also tells what it asks for elsewhere.
  async Page(address) {
    const context = await this.browser.newContext(View({ address }, {}));
    await context.addInitScript(NoteCalls);
    const page = await context.newPage();
    page.watch = new Watch(page);
    page.on("request", (request) => {
      if (!request.url().startsWith(address)) {
        page.watch.faults.push(`asks for ${request.url()}`);
      }
    });
    return page;
  }

  // What the page is made of besides, and what its browser complains of. An answer that refuses is
  // nothing to complain of.
  async Faults(page) {
    const [parts] = await page.evaluate(PartsOf);
    return [...parts.filter((part) => !this.known.has(part)),
      ...page.watch.Take().filter((fault) => !/with a status of 4\d\d/.test(fault))];
  }

  // The same of HTML texts that `page` reads and does not show: a list for each.
  async FaultsOf(page, sources) {
    const all = await page.evaluate(PartsOf, sources);
    return all.map((parts) => parts.filter((part) => !this.known.has(part)));
  }
}
