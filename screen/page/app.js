import { setClock } from "./api.js";
import { showCall, showNotification } from "./calls.js";
import { loadChannels, markChannel } from "./channels.js";
import { openGuide, refreshGuide } from "./guide.js";
import { showPictures, showScene } from "./picture.js";
import { loadRecordings } from "./recordings.js";
import { showRemote } from "./remote.js";

const link = document.getElementById("link");
let connected = 0;
let state = { paths: [] };

function listsChanged() {
  loadChannels().then(() => markChannel(state));
  refreshGuide();
  loadRecordings();
}

function receive(next) {
  const back = next.reachable && !state.reachable;
  state = next;
  setClock(state.time, state.offset);
  link.textContent = state.reachable ? "" : "The television does not answer";
  showScene(state.scene);
  showPictures(state, connected);
  showRemote(state);
  markChannel(state);
  if (back) listsChanged();
}

function notified(notification) {
  showNotification(notification);
  const { kind, event } = notification;
  if (kind === "channellist" && !event.startsWith("current")) loadChannels().then(() => markChannel(state));
  if (kind === "pvr_status") loadRecordings();
  if (kind === "event" && !event.startsWith("window")) refreshGuide();
}

// Comes back by itself after the server has gone; entries that were sent before come again then.
const events = new EventSource("/events");
events.onopen = () => {
  connected += 1;
  document.getElementById("notifications").replaceChildren();
  document.getElementById("calls").replaceChildren();
  state.reachable = false;
};
events.onerror = () => { link.textContent = "The connection is lost"; };
events.addEventListener("state", (event) => receive(JSON.parse(event.data)));
events.addEventListener("notification", (event) => notified(JSON.parse(event.data)));
events.addEventListener("call", (event) => showCall(JSON.parse(event.data)));

document.addEventListener("visibilitychange", () => showPictures(state, connected));
addEventListener("resize", () => showPictures(state, connected));

// The tabs: arrow keys go from one to the next.
const tabs = [...document.querySelectorAll("[role=tab]")];
function choose(tab) {
  for (const one of tabs) {
    const chosen = one === tab;
    one.setAttribute("aria-selected", chosen);
    one.tabIndex = chosen ? 0 : -1;
    document.getElementById(one.getAttribute("aria-controls")).hidden = !chosen;
  }
  if (tab.id === "tab-guide") openGuide();
}
for (const tab of tabs) tab.addEventListener("click", () => choose(tab));
document.getElementById("tabs").addEventListener("keydown", (event) => {
  const step = { ArrowRight: 1, ArrowLeft: tabs.length - 1 }[event.key];
  if (!step) return;
  const next = tabs[(tabs.indexOf(event.target) + step) % tabs.length];
  next.focus();
  choose(next);
  event.preventDefault();
});
