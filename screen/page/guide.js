import { act, clock, element, get, local, now } from "./api.js";
import { allChannels } from "./channels.js";

const HOURS = 6;
const STEP = 3 * 3600;
const ROWS = 20;
const guide = document.getElementById("guide");
const hours = document.getElementById("guide-hours");
const rows = document.getElementById("guide-rows");
const dialog = document.getElementById("programme");

let from = 0;
let opened = false;
let loading = false;
let loaded = 0;
let drawing = 0;
let chosen = null;

guide.style.setProperty("--hours", HOURS);

const place = (utc) => `calc(var(--name) + var(--hour) * ${(utc - from) / 3600})`;

function programmeButton(channel, programme) {
  const end = programme.start + programme.seconds;
  const left = Math.max(programme.start, from);
  const right = Math.min(end, from + HOURS * 3600);
  const times = `${clock(programme.start)} to ${clock(end)}`;
  const button = element("button", { type: "button", className: "programme", title: `${programme.title}, ${times}` },
    programme.title);
  button.setAttribute("aria-label", `${programme.title}, ${times}, ${channel.name}`);
  button.style.left = place(left);
  button.style.width = `calc(var(--hour) * ${(right - left) / 3600} - 2px)`;
  if (programme.start <= now() && now() < end) button.classList.add("now");
  button.addEventListener("click", () => show(channel, programme));
  return button;
}

async function more() {
  const channels = allChannels();
  if (loading || loaded >= channels.length) return;
  loading = true;
  const mine = drawing;
  const wanted = channels.slice(loaded, loaded + ROWS);
  try {
    const found = await get(`/guide?channels=${wanted.map((one) => one.id)}&from=${from}&to=${from + HOURS * 3600}`);
    if (mine !== drawing) return;
    loaded += wanted.length;
    rows.append(...found.map((row, i) => {
      const channel = wanted[i];
      const name = element("button", { type: "button", className: "channel", role: "rowheader" },
        element("span", { className: "note" }, `${channel.number} `), channel.name);
      name.addEventListener("click", () => act({ do: "select", channel: channel.id, path: 0 }));
      return element("div", { className: "row", role: "row" }, name,
        ...row.programmes.map((programme) => programmeButton(channel, programme)));
    }));
  } catch {
    // The television is away; the next notification or the next visit asks again.
  } finally {
    loading = false;
  }
  if (mine !== drawing || guide.scrollHeight <= guide.clientHeight + 50) more();
}

function draw() {
  drawing += 1;
  loaded = 0;
  rows.replaceChildren();
  hours.replaceChildren(...Array.from({ length: HOURS * 2 }, (_, i) => {
    const mark = element("span", {}, clock(from + i * 1800));
    mark.style.left = place(from + i * 1800);
    return mark;
  }));
  document.getElementById("guide-day").textContent = local(from).slice(0, 10);
  more();
}

function go(start) {
  from = Math.floor(start / 1800) * 1800;
  draw();
}

export function openGuide() {
  if (opened) return;
  opened = true;
  go(now() - 1800);
}

export function refreshGuide() {
  if (opened) draw();
}

async function show(channel, programme) {
  chosen = { channel, programme };
  document.getElementById("programme-title").textContent = programme.title;
  document.getElementById("programme-when").textContent =
    [`${channel.number} ${channel.name}`, `${clock(programme.start)} to ${clock(programme.start + programme.seconds)}`,
      programme.genre, programme.rating].filter(Boolean).join(", ");
  const details = document.getElementById("programme-details");
  details.textContent = "";
  dialog.showModal();
  const full = await get(`/programme?channel=${channel.id}&event=${programme.event}`).catch(() => null);
  details.textContent = full?.details ?? "";
}

dialog.addEventListener("close", () => {
  const { channel, programme } = chosen;
  if (dialog.returnValue === "watch") act({ do: "select", channel: channel.id, path: 0 });
  if (dialog.returnValue === "record") {
    act({ do: "book", channel: channel.id, start: programme.start, seconds: programme.seconds, title: programme.title });
  }
  dialog.returnValue = "";
});
guide.addEventListener("scroll", () => {
  if (guide.scrollTop + guide.clientHeight > guide.scrollHeight - 300) more();
});
document.getElementById("guide-earlier").addEventListener("click", () => go(from - STEP));
document.getElementById("guide-later").addEventListener("click", () => go(from + STEP));
document.getElementById("guide-now").addEventListener("click", () => go(now() - 1800));
