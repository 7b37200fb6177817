// What the commands print for a reader, and the picture that "shot" draws.
import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";
import { test } from "node:test";

import { computer } from "../support/printhost.mjs";

const NAME = "倉庫 1F,LPT1:";

// Commands, separated by blanks, and what they print. NAME stands for the printer's name, STATE for the
// folder of the computer; "…" stands for the rest of a line, or on a line of its own for any lines.
const OUTPUTS = {
  "--version": "printhost 14.0.1.20\n",
  "list": `
倉庫 1F,LPT1:	VELA QM610r	LPT1:
棚札	Label driver	LPT1:
`,
  "caps NAME": `
DC_FIELDS	9999
DC_PAPERS	2	[257,256]
DC_PAPERSIZE	2	[[580,680],[580,680]]
DC_MINEXTENT	6553700	[100,100]
DC_MAXEXTENT	106824260	[580,1630]
DC_BINS	1	[256]
DC_DUPLEX	0
DC_SIZE	220
DC_EXTRA	232
DC_VERSION	1025
DC_DRIVER	3585
DC_BINNAMES	1	["標準"]
DC_ENUMRESOLUTIONS	1	[[203,203]]
DC_FILEDEPENDENCIES	0
DC_TRUETYPE	1
DC_PAPERNAMES	2	["Standard Label 58 x 68 mm","フリーサイズ"]
DC_ORIENTATION	90
DC_COPIES	32767
DC_BINADJUST	-1
DC_EMF_COMPLIANT	1
…
DC_MEDIAREADY	2	["Standard Label 58 x 68 mm","フリーサイズ"]
DC_STAPLE	0
…
DC_MEDIATYPENAMES	3	["Plain paper","Transparency","Glossy paper"]
DC_MEDIATYPES	3	[1,2,3]
`,
  "settings NAME": `
public.dmDeviceName	倉庫 1F
public.dmSpecVersion	1025
…
public.dmFormName	Standard Label 58 x 68 mm
…
private.PaperID	257
…
private.FreePaper.PaperName	フリーサイズ
…
private.ColorAdjust.caRedGreenTint	0
`,
  "data NAME": `
Private DevMode	REG_BINARY	3338	01005300740061006e006400610072006400…
SPLUserModePrinterDriver	REG_SZ	20	QM610rDRV2
`,
  "data NAME SPLUserModePrinterDriver": "SPLUserModePrinterDriver	REG_SZ	20	QM610rDRV2\n",
  "device NAME": `
mode	peel
density	203
firmware	V01.20
font	F01.03
offline	false
answer	normal
`,
  "registry HKLM\\SOFTWARE": `
SOFTWARE\\Kestrel\\Devices\\倉庫 1F,LPT1:\\Answer	REG_DWORD	4	0
SOFTWARE\\Kestrel\\Devices\\倉庫 1F,LPT1:\\Density	REG_DWORD	4	203
SOFTWARE\\Kestrel\\Devices\\倉庫 1F,LPT1:\\Firmware	REG_SZ	14	V01.20
SOFTWARE\\Kestrel\\Devices\\倉庫 1F,LPT1:\\Font	REG_SZ	14	F01.03
SOFTWARE\\Kestrel\\Devices\\倉庫 1F,LPT1:\\Mode	REG_DWORD	4	2
SOFTWARE\\Kestrel\\Devices\\倉庫 1F,LPT1:\\Offline	REG_DWORD	4	0
`,
  "machine --os 6.1 --server": `
os	6.1
product	server
administrator	true
highContrast	false
permissions.倉庫 1F,LPT1:	true
permissions.棚札	true
ansiPage	932
codePage932	true
hideExtensions	true
windows	STATE/drive_c/WINDOWS
drivers	STATE/drive_c/WINDOWS/system32/spool/drivers/w32x86
`,
  "module": `
file	STATE/drive_c/WINDOWS/system32/spool/drivers/w32x86/3/QM610rDRV1.DLL
format	PE32+
machine	x86-64
version	14.0.1.20
sha256	…
symbols	QM610rDRV1.pdb …
hardening
  anyAddress	yes
  highEntropy	yes
  noExecutableData	yes
  noExceptionHandlers	no
  stackProtector	yes
  callTargets	…
  shadowStacks	yes
  systemLibrariesOnly	yes
exports (16)
  DevQueryPrint
…
  PrinterProperties
imports from kernel32.dll (…
  FreeLibrary
…
imports from winspool.drv (…
…
resources (…
…
  dialog	111	…
…
sections (…
  .text	r-x	…
…
`,
};

test("each command prints for a reader", (t) => {
  const pc = computer(t, NAME);
  pc.done("add", "棚札", "--driver-name", "Label driver");
  pc.done("device", NAME, "--mode", "peel");
  for (const [command, output] of Object.entries(OUTPUTS)) {
    const lines = pc.done(...command.split(" ").map((word) => word.replace("NAME", NAME))).replaceAll(pc.state, "STATE");
    const pattern = output.replace(/^\n/, "").replace(/[\\^$.*+?()[\]{}|]/g, "\\$&").replace(/^…\n/gm, "(?:.*\\n)*").replaceAll("…", ".*");
    assert.match(lines, new RegExp(`^${pattern}$`), command);
  }
});

// golden/paper_page.svg: every kind of control, and the whole-label view with its markers. Pictures of the
// resources are named by their hash. RENEW=1 writes the file anew; look at it in a browser then.
test("shot draws the page with its pictures and controls", (t) => {
  const pc = computer(t, NAME);
  writeFileSync(pc.file("steps"), ['{"page": 1}', '{"type": 1099, "text": "40"}', '{"click": 1061}', `{"shot": "${pc.file("page.svg")}"}`, '{"button": "ok"}'].join("\n"));
  pc.done("play", NAME, pc.file("steps"));
  const picture = readFileSync(pc.file("page.svg"), "utf8").replace(/(data:image\/bmp;base64,)([\w+/=]+)/g,
    (_, type, data) => type + createHash("sha256").update(data).digest("hex").slice(0, 16));
  const golden = new URL("golden/paper_page.svg", import.meta.url);
  if (process.env.RENEW) writeFileSync(golden, picture);
  assert.equal(picture, readFileSync(golden, "utf8"));
});
