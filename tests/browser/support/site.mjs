// quillo-serve with the sample pages, on a free port, with a state folder of its own.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { mkdtemp, readFile, rm, writeFile } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";

const program = process.env.QUILLO_SERVE;

// What the log holds to begin with: an entry of each level, a long one and one of another form.
export const firstEntries = [
  "2026-05-01T12:30:05.123+02:00 [4711] info server/supervisor.cpp:31: a worker was made anew",
  "2026-05-01T12:30:06.123+02:00 [4711] warning src/text/filter.cpp:31: Filter: bad byte \\x01",
  `2026-05-01T12:30:07.123+02:00 [4711] error platform/host/sys/storage.cpp:131: ${"long/".repeat(99)}`,
  "a line of another form"].map((line) => `${line}\n`).join("");

export class Site {
  // Keeps its state over Stop and Start, until Remove.
  static async Make() {
    if (!program) {
      throw new Error("QUILLO_SERVE does not name quillo-serve: run ./dev browser");
    }
    const site = new Site();
    site.folder = await mkdtemp(join(tmpdir(), "quillo-browser-"));
    site.logFile = join(site.folder, "log");
    await writeFile(site.logFile, firstEntries);
    // A test that cannot go on leaves no server behind.
    process.once("exit", () => site.process?.kill());
    return site;
  }

  static async Started(options) {
    const site = await Site.Make();
    await site.Start(options);
    return site;
  }

  // A server that is started again listens where it did, as a device does.
  async Start({ environment = {} } = {}) {
    const listen = `127.0.0.1:${this.port ?? 0}`;
    this.process = spawn(
      program,
      ["--listen", listen, "--state-dir", join(this.folder, "state"), "--log-file", this.logFile,
        "--slow-page", "3600000"],
      { env: { ...process.env, ...environment }, stdio: ["ignore", "pipe", "inherit"] });
    this.ended = once(this.process, "exit");
    const [line] = await Promise.race([
      once(createInterface(this.process.stdout), "line"),
      this.ended.then(([code]) => {
        throw new Error(`${program} ended with ${code} before it served`);
      })]);
    this.address = line.match(/http:\/\/[^/]*/)[0];
    this.port = new URL(this.address).port;
  }

  async Stop() {
    this.process.kill("SIGTERM");
    const [code] = await this.ended;
    if (code !== 0) {
      throw new Error(`quillo-serve ended with ${code}`);
    }
  }

  async Remove() {
    await this.Stop();
    await rm(this.folder, { recursive: true });
  }

  async Log() {
    return readFile(this.logFile, "utf8");
  }

  // The paths of the navigation bar.
  async Paths() {
    const first = await fetch(this.address);
    const bar = (await first.text()).match(/<div [^>]*id="nav_bar"[^]*?<\/div>/)[0];
    const links = [...bar.matchAll(/href="([^"]*)"/g)].map((link) => link[1]);
    return [new URL(first.url).pathname, ...links];
  }

  // The pages in all that a link can lead to: those of the navigation bar, their views, and one that
  // there is not.
  async AllPaths() {
    return [...(await this.Paths()), "/network?view=traffic", "/network?view=hardware",
      "/settings?stored=yes", "/nothing"];
  }
}
