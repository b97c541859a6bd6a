import { act, element, get } from "./api.js";

const list = document.getElementById("channel-list");
const search = document.getElementById("channel-search");
// More than anybody looks through without a search.
const SHOWN = 200;

let channels = [];
let current = 0;

export function allChannels() { return channels; }

function show() {
  const words = search.value.trim().toLowerCase();
  const found = channels.filter((channel) =>
    channel.number.startsWith(words) || channel.name.toLowerCase().includes(words));
  list.replaceChildren(...found.slice(0, SHOWN).map((channel) => {
    const notes = [channel.list, channel.radio ? "radio" : "", channel.hd ? "HD" : "",
      channel.scrambled ? "scrambled" : "", channel.locked ? "locked" : ""];
    const button = element("button", { type: "button", "data-channel": channel.id },
      element("span", { className: "number" }, channel.number), channel.name, " ",
      element("span", { className: "note" }, notes.filter(Boolean).join(", ")));
    button.addEventListener("click", () => act({ do: "select", channel: channel.id, path: 0 }));
    return element("li", {}, button);
  }));
  if (found.length > SHOWN) list.append(element("li", { className: "note" }, `and ${found.length - SHOWN} more`));
  mark();
}

function mark() {
  for (const button of list.querySelectorAll("button")) {
    button.setAttribute("aria-current", button.dataset.channel === `${current}`);
  }
}

export function markChannel(state) {
  const channel = state.paths.length ? state.paths[0].channel : 0;
  if (channel === current) return;
  current = channel;
  mark();
}

export async function loadChannels() {
  try {
    channels = await get("/channels");
  } catch {
    return;
  }
  show();
}

search.addEventListener("input", show);
