// A display list as SVG: rectangles, fills, lines, images and text in the order they were drawn.

const SVG = "http://www.w3.org/2000/svg";
// Pen styles by number: solid, dash, dot, dash dot, dash dot dot; 5 draws nothing.
const DASHES = ["", "6 3", "2 2", "6 3 2 3", "6 3 2 3 2 3"];
const NO_PEN = 5;

function make(name, attributes, parent) {
  const node = document.createElementNS(SVG, name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value !== undefined && value !== "") node.setAttribute(key, value);
  }
  parent?.append(node);
  return node;
}

function stroke(op) {
  if (op.style === NO_PEN) return { stroke: "none" };
  return {
    stroke: op.pen,
    "stroke-width": Math.max(op.width, 1),
    // A line of one pixel keeps that width at every scale.
    "vector-effect": op.width <= 1 ? "non-scaling-stroke" : "",
    "stroke-dasharray": op.width <= 1 ? DASHES[op.style] : "",
  };
}

const painters = {
  rectangle(op, parent) {
    const [x, y, width, height] = op.rect;
    // The outline lies inside the rectangle and runs through the middle of its pixels.
    make("rect", {
      x: x + 0.5, y: y + 0.5, width: Math.max(width - 1, 0), height: Math.max(height - 1, 0), fill: op.brush, ...stroke(op),
    }, parent);
  },
  fill(op, parent) {
    const [x, y, width, height] = op.rect;
    make("rect", { x, y, width, height, fill: op.brush }, parent);
  },
  line(op, parent) {
    const [x, y, width, height] = op.rect;
    make("line", { x1: x + 0.5, y1: y + 0.5, x2: x + width + 0.5, y2: y + height + 0.5, ...stroke(op) }, parent);
  },
  image(op, parent) {
    if (!op.bitmap) return;
    const [x, y, width, height] = op.rect;
    const frame = make("svg", { x, y, width, height, viewBox: op.source.join(" "), preserveAspectRatio: "none" }, parent);
    make("image", { href: `picture/${op.bitmap}`, x: 0, y: 0 }, frame);
  },
  text(op, parent) {
    const [x, y] = op.at;
    if (op.background) {
      const [left, top, width, height] = op.rect;
      make("rect", { x: left, y: top, width, height, fill: op.background }, parent);
    }
    // A font width other than half the height stretches the text, as the platform's font mapper does.
    const stretch = op.fontWidth > 0 && op.fontHeight > 0 ? (2 * op.fontWidth) / op.fontHeight : 1;
    const node = make("text", {
      transform: `translate(${x} ${y + op.fontAscent}) scale(${stretch} 1)`, "font-size": op.fontHeight || 12, fill: op.colour,
    }, parent);
    node.style.fontFamily = `"${op.face.replace(/["\\]/g, "")}", "Noto Sans CJK JP", sans-serif`;
    node.textContent = op.text;
  },
};

// Returns the SVG element of a display list, width × height pixels large.
export function draw(list, width, height) {
  // Black text on white takes the colours of the page.
  const isPlainText = list.every((op) => (op.kind === "fill" && op.brush === "#ffffff") || (op.kind === "text" && op.colour === "#000000"));
  const svg = make("svg", { viewBox: `0 0 ${width} ${height}`, class: isPlainText ? "drawing plain-text" : "drawing", "aria-hidden": "true" });
  for (const op of list) {
    let parent = svg;
    if (op.clip) {
      const [x, y, w, h] = op.clip;
      parent = make("svg", { x, y, width: w, height: h, viewBox: op.clip.join(" ") }, svg);
    }
    painters[op.kind]?.(op, parent);
  }
  return svg;
}
