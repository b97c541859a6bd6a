// The running lists: notifications as they arrive, and the calls that were made for the page.

import { element } from "./api.js";

const KEPT = 200;
const notifications = document.getElementById("notifications");
const calls = document.getElementById("calls");
const filter = document.getElementById("notification-filter");
const pause = document.getElementById("notification-pause");

function add(list, item) {
  list.prepend(item);
  while (list.children.length > KEPT) list.lastChild.remove();
}

const fits = (item) => item.textContent.toLowerCase().includes(filter.value.trim().toLowerCase());

export function showNotification({ kind, event, values }) {
  if (pause.checked) return;
  const shown = Object.entries(values).map(([key, value]) => `${key} ${value}`).join(", ");
  const item = element("li", {},
    element("time", {}, new Date().toTimeString().slice(0, 8)), " ",
    element("b", {}, `${kind} ${event}`), ` ${shown}`);
  item.hidden = !fits(item);
  add(notifications, item);
}

export function showCall({ function: name, arguments: given, result, us }) {
  add(calls, element("li", {}, `${name}(${given}) `, element("b", {}, `\u2192 ${result} `),
    element("span", { className: "took" }, `${us} \u00b5s`)));
}

filter.addEventListener("input", () => {
  for (const item of notifications.children) item.hidden = !fits(item);
});
