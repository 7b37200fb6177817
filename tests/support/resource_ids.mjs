// The names of resources/resource.h with their numbers, and the ids that the platform gives OK and Cancel.
import { readFileSync } from "node:fs";

const header = readFileSync(new URL("../../resources/resource.h", import.meta.url), "utf8");
const defines = [...header.matchAll(/#define (\w+) (\d+)/g)].map(([, name, number]) => [name, Number(number)]);

export const ids = { IDOK: 1, IDCANCEL: 2, ...Object.fromEntries(defines) };
