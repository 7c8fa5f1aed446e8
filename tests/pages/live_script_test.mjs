// The script that keeps the values of a page fresh, in a browser made of a clock and a few elements.
//
//     live_script_test.mjs LIVE.JS
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import vm from 'node:vm';

const code = readFileSync(process.argv[2], 'utf8');

class Target {
  constructor() {
    this.listeners = {};
    this.textContent = '';
    this.dataset = {};
  }
  addEventListener(name, listener) {
    this.listeners[name] = listener;
  }
}

// A page with the script, whose clock stands until it is moved.
class Browser {
  constructor() {
    this.now = 0;
    this.timers = new Map();
    this.asked = [];
    this.isFailing = false;
    this.isMarked = false;
    this.live = new Target();
    this.live.dataset = { source: '/values' };
    this.live.replaceChildren = (...nodes) => { this.live.nodes = nodes; };
    this.live.contains = () => true;
    this.note = new Target();
    this.note.dataset = { failed: 'no answer' };
    this.refresh = new Target();
    this.document = new Target();
    this.document.hidden = false;
    this.document.getElementById = (id) =>
      ({ live: this.live, live_note: this.note, refresh: this.refresh })[id];
    let count = 0;
    vm.runInNewContext(code, {
      document: this.document,
      AbortSignal,
      DOMParser: class {
        parseFromString(text) {
          return { getElementById: (id) => ({ childNodes: [`${id}: ${text}`] }) };
        }
      },
      getSelection: () => ({ isCollapsed: !this.isMarked }),
      setTimeout: (work, delay) => this.timers.set(++count, { at: this.now + delay, work }) && count,
      clearTimeout: (timer) => this.timers.delete(timer),
      fetch: async (path) => {
        this.asked.push(this.now);
        assert.equal(path, '/values');
        if (this.isFailing === 'status') {
          return { ok: false, status: 500, text: async () => 'a refusal' };
        }
        if (this.isFailing) {
          throw new TypeError('no network');
        }
        return { ok: true, text: async () => `values at ${this.now}` };
      },
    });
  }

  // Moves the clock from timer to timer, and lets everything that is under way come to its end.
  async pass(milliseconds) {
    const end = this.now + milliseconds;
    for (;;) {
      await new Promise((done) => { setImmediate(done); });
      const [first] = [...this.timers].sort(([, left], [, right]) => left.at - right.at);
      if (!first || first[1].at > end) {
        this.now = end;
        return;
      }
      this.now = first[1].at;
      this.timers.delete(first[0]);
      first[1].work();
    }
  }

  hide(isHidden) {
    this.document.hidden = isHidden;
    this.document.listeners.visibilitychange();
  }
}

const tests = {
  'asks every five seconds and shows the answer': async (browser) => {
    await browser.pass(4999);
    assert.deepEqual(browser.asked, []);
    await browser.pass(10001);
    assert.deepEqual(browser.asked, [5000, 10000, 15000]);
    assert.deepEqual(browser.live.nodes, ['live: values at 15000']);
    assert.equal(browser.note.textContent, '');
  },
  'asks nothing while nobody looks, and at once when somebody does': async (browser) => {
    browser.hide(true);
    await browser.pass(60000);
    assert.deepEqual(browser.asked, []);
    browser.hide(false);
    await browser.pass(5000);
    assert.deepEqual(browser.asked, [60000, 65000]);
  },
  'does not go on after an answer that came when nobody looked any more': async (browser) => {
    browser.refresh.listeners.click({ preventDefault() {} });
    browser.document.hidden = true;
    await browser.pass(60000);
    assert.deepEqual(browser.asked, [0]);
  },
  'asks less and less often while there is no answer, and says so': async (browser) => {
    browser.isFailing = true;
    await browser.pass(400000);
    assert.deepEqual(browser.asked,
      [5000, 15000, 35000, 75000, 155000, 235000, 315000, 395000]);
    assert.equal(browser.note.textContent, 'no answer');
    browser.isFailing = false;
    await browser.pass(90000);
    assert.deepEqual(browser.asked.slice(8), [475000, 480000, 485000, 490000]);
    assert.equal(browser.note.textContent, '');
  },
  'takes a refusal for no answer': async (browser) => {
    browser.isFailing = 'status';
    await browser.pass(5000);
    assert.equal(browser.note.textContent, 'no answer');
    assert.equal(browser.live.nodes, undefined);
  },
  'asks at once when the link is followed, once at a time': async (browser) => {
    let prevented = 0;
    const click = () => browser.refresh.listeners.click({ preventDefault: () => { prevented += 1; } });
    click();
    click();
    await browser.pass(5000);
    assert.equal(prevented, 2);
    assert.deepEqual(browser.asked, [0, 5000]);
  },
  'leaves alone what the reader has marked': async (browser) => {
    browser.isMarked = true;
    await browser.pass(5000);
    assert.deepEqual(browser.asked, [5000]);
    assert.equal(browser.live.nodes, undefined);
  },
};

for (const [rule, test] of Object.entries(tests)) {
  await test(new Browser()).catch((error) => {
    error.message = `${rule}: ${error.message}`;
    throw error;
  });
}
console.log(`${Object.keys(tests).length} rules hold`);
