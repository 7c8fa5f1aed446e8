import assert from "node:assert/strict";

// Fails with a line for each fault.
export function ExpectNone(faults) {
  assert.ok(faults.length === 0, `\n${faults.join("\n")}\n`);
}
