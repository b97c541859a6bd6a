// The pictures, and what lies over them: the server's drawing as SVG.

const SVG = "http://www.w3.org/2000/svg";
const scene = document.getElementById("scene");
const spoken = document.getElementById("spoken");
const screen = document.getElementById("screen");
const images = ["main", "sub"].map((path) => document.getElementById(`picture-${path}`));
const drawn = new Map();

function shape([x, y, width, height, colour, text, size, face]) {
  const made = document.createElementNS(SVG, text === undefined ? "rect" : "text");
  const attributes = { x, y, fill: colour };
  if (text === undefined) {
    Object.assign(attributes, { width, height });
  } else {
    made.textContent = text;
    Object.assign(attributes, {
      class: face, "font-size": size, textLength: width, lengthAdjust: "spacingAndGlyphs",
    });
  }
  for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
  return made;
}

export function showScene(groups) {
  for (const [part, old] of drawn) {
    if (groups.some((group) => group.part === part)) continue;
    old.made.remove();
    drawn.delete(part);
  }
  for (const group of groups) {
    const text = JSON.stringify(group);
    const old = drawn.get(group.part);
    if (old && old.text === text) {
      scene.append(old.made);
      continue;
    }
    const made = document.createElementNS(SVG, "g");
    made.setAttribute("data-part", group.part);
    made.append(...group.shapes.map(shape));
    if (old) old.made.remove();
    drawn.set(group.part, { text, made });
    scene.append(made);
  }
  const words = groups.filter((group) => group.part !== "teletext")
    .map((group) => [group.label, ...group.shapes.map((one) => one[5]).filter(Boolean)].join(", "))
    .join(". ");
  if (spoken.textContent !== words) spoken.textContent = words;
}

// A picture no larger than it is seen, and none while nobody looks.
export function showPictures(state, connected) {
  state.paths.forEach((path, number) => {
    const image = images[number];
    const [x, y, width, height] = path.place;
    image.hidden = !path.running || !state.reachable;
    Object.assign(image.style, { left: `${x}%`, top: `${y}%`, width: `${width}%`, height: `${height}%` });
    image.alt = path.running ? `Picture of ${path.name}` : "";
    let source = "";
    if (!image.hidden && !document.hidden) {
      const pixels = screen.clientWidth * width / 100 * Math.min(devicePixelRatio, 2);
      source = `/picture/${["main", "sub"][number]}?width=${Math.ceil(pixels / 160) * 160}&connection=${connected}`;
    }
    if ((image.getAttribute("src") ?? "") === source) return;
    if (source) image.src = source;
    else image.removeAttribute("src");
  });
}
