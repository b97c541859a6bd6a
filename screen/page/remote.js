import { act, element } from "./api.js";

const remote = document.getElementById("remote");
const pin = document.getElementById("pin");
const digits = document.getElementById("pin-digits");

let state = {};
const buttons = {};
let teletext = "";

const key = (code) => () => act({ do: "key", key: code });

// Name, what it does, the key of the keyboard that does the same.
const KEYS = [
  ["Power", key(26), "p"],
  ["Input", key(178), "s"],
  ["Mute", key(164), "m"],
  ...[1, 2, 3, 4, 5, 6, 7, 8, 9].map((digit) => [`${digit}`, key(7 + digit), `${digit}`]),
  [".", key(56), "."],
  ["0", key(7), "0"],
  ["OK", key(23), "Enter"],
  ["Volume +", key(24), "ArrowRight"],
  ["Info", key(165), "i"],
  ["Channel +", key(166), "ArrowUp"],
  ["Volume \u2212", key(25), "ArrowLeft"],
  ["Last", key(229), "Backspace"],
  ["Channel \u2212", key(167), "ArrowDown"],
  ["Audio", key(222), "a"],
  ["Subtitles", () => act({ do: "subtitle" }), "c"],
  ["Teletext", () => act({ do: "teletext", page: state.teletext ? "" : "100" }), "t"],
  ["Record", () => act({ do: "record" }), "r"],
  ["Scan", () => act({ do: "scan" }), ""],
  ["Picture in picture", pictureInPicture, "v"],
  ["Leave alert", () => act({ do: "leave alert" }), ""],
];

// One picture, a second one in it, side by side. The second one is that of the first HDMI input.
async function pictureInPicture() {
  const next = (state.mode + 1) % 3;
  await act({ do: "view", mode: next });
  if (next === 1) await act({ do: "input", input: 5, path: 1 });
}

function press(name) {
  const found = KEYS.find(([one]) => one === name);
  // While teletext is on its digits are those of a page.
  if (state.teletext && /^\d$/.test(name)) {
    teletext += name;
    if (teletext.length === 3) {
      act({ do: "teletext", page: teletext }).catch(() => {});
      teletext = "";
    }
    return;
  }
  found[1]();
}

for (const [name, , short] of KEYS) {
  const button = element("button", { type: "button" }, name);
  if (short) button.setAttribute("aria-keyshortcuts", short);
  if (short && short.length === 1 && short !== name) button.title = `Key ${short}`;
  if (name === "Picture in picture" || name === "Leave alert") button.className = "wide";
  button.addEventListener("click", () => press(name));
  buttons[name] = button;
  remote.append(button);
}

document.addEventListener("keydown", (event) => {
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  const { target } = event;
  if (target.closest("input, dialog")) return;
  const found = KEYS.find(([, , short]) => short === event.key);
  if (!found) return;
  // Lists and buttons have a use of their own for these.
  const own = event.key.startsWith("Arrow") || event.key === "Enter";
  if (own && target !== document.body && target.id !== "screen") return;
  press(found[0]);
  event.preventDefault();
});

pin.addEventListener("submit", async (event) => {
  event.preventDefault();
  const given = digits.value;
  digits.value = "";
  await act({ do: "pin", pin: given });
});
pin.addEventListener("keydown", (event) => {
  if (event.key === "Escape") act({ do: "close pin" });
});
document.getElementById("pin-close").addEventListener("click", () => act({ do: "close pin" }));

export function showRemote(next) {
  const opened = next.pin && !state.pin;
  if (!next.teletext) teletext = "";
  state = next;
  pin.hidden = !state.pin;
  if (opened) digits.focus();
  for (const [name, pressed] of [["Mute", state.muted], ["Teletext", state.teletext],
    ["Record", state.recording], ["Scan", state.scans], ["Picture in picture", state.mode !== 0]]) {
    buttons[name].setAttribute("aria-pressed", pressed);
  }
  buttons["Leave alert"].hidden = !state.alert;
}
