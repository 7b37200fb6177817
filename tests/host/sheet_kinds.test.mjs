// The kinds of sheets that printhost shows.
import assert from "node:assert/strict";
import { test } from "node:test";

import { openPage } from "../support/driving.mjs";
import { computer } from "../support/printhost.mjs";
import { ids } from "../support/resource_ids.mjs";

const PRINTER = "Label Printer";
const PAPER_PAGE = 1;

// storedBase: the printer's vertical base point after it was set to 7 and OK was pressed.
for (const { kind, pages, storedBase } of [
  { kind: "document", pages: 6, storedBase: 0 },
  { kind: "advanced", pages: 6, storedBase: 0 },
  { kind: "user-default", pages: 6, storedBase: 7 },
  { kind: "printer", pages: 1, storedBase: 0 },
]) {
  test(`Sheet: kind ${kind} has ${pages} pages and ${storedBase ? "stores" : "does not store"} the settings on OK`, async (t) => {
    const pc = computer(t, PRINTER);
    const sheet = pc.start("sheet", PRINTER, "--kind", kind);
    const client = await openPage(await sheet.address);
    const { about, windows } = await client.until((snapshot) => snapshot.windows?.length);
    assert.equal(about.kind, kind);
    assert.equal(windows[0].tabs.length, pages);
    if (pages > PAPER_PAGE) {
      await client.act({ action: "page", index: PAPER_PAGE });
      await client.act({ action: "edit", id: ids.IDC_PAPER_VERT_BASE, text: "7" });
    }
    await client.act({ action: "press", button: "ok" });
    assert.equal((await sheet.ended).status, 0);
    assert.equal(pc.json("settings", PRINTER).private.nVertBase, storedBase);
  });
}
