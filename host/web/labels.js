// Accessible names: the static text before an input in template order names it; a group box owns the controls
// inside it.
import { meaningOf } from "./gloss.js";

const contains = ([x, y, width, height], [left, top]) => left >= x && top >= y && left < x + width && top < y + height;

const isLabel = (view) => view.kind === "static" && view.prefix && view.text.trim() !== "";

// Returns the smallest group box that contains a control, undefined without one.
export function enclosingGroup(groups, view) {
  return groups.filter((group) => group !== view && contains(group.rect, view.rect))
    .sort((a, b) => a.rect[2] * a.rect[3] - b.rect[2] * b.rect[3])[0];
}

function nameInput(node, labelNode) {
  const drawnText = (node.view.drawing ?? []).map((op) => op.text ?? "").join("");
  if (node.kind === "updown") {
    for (const arrow of node.element.children) arrow.setAttribute("aria-labelledby", `${labelNode?.text.id ?? ""} ${arrow.id}`);
  } else if (node.kind === "drawn" && drawnText) {
    node.input.ariaLabel = drawnText;
    node.input.title = meaningOf(drawnText);
  } else if (labelNode) {
    node.input.setAttribute("aria-labelledby", labelNode.text.id);
  }
  if (node.kind === "drawn" && !node.view.tabStop) node.input.role = labelNode || drawnText ? "img" : "presentation";
}

export function nameControls(frame, views) {
  const nodeOf = (view) => view && frame.controls.get(view.handle);
  const groups = views.filter((view) => view.kind === "group");
  const membersOf = new Map(groups.map((group) => [group, []]));
  let label = null;
  for (const view of views) {
    const group = enclosingGroup(groups, view);
    membersOf.get(group)?.push(nodeOf(view).element.id);
    if (view.kind === "group") label = null;
    else if (isLabel(view)) label = view;
    if (["edit", "combo", "list", "updown", "drawn"].includes(view.kind)) nameInput(nodeOf(view), nodeOf(label ?? group));
  }
  for (const [group, members] of membersOf) {
    nodeOf(group).element.setAttribute("aria-labelledby", nodeOf(group).text.id);
    nodeOf(group).element.setAttribute("aria-owns", members.join(" "));
  }
}
