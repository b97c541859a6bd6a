// What the page asks of its server.

export async function get(path) {
  const response = await fetch(path);
  if (!response.ok) throw new Error(await response.text());
  return response.json();
}

async function post(request) {
  const response = await fetch("/do", {
    method: "POST",
    headers: { "Content-Type": "application/json" },
    body: JSON.stringify(request),
  });
  if (!response.ok) throw new Error(await response.text());
  return (await response.json()).result;
}

// One after the other: the browser sends requests side by side, and digits have an order.
let last = Promise.resolve();
export function act(request) {
  const result = last.then(() => post(request));
  last = result.catch(() => {});
  return result;
}

export function element(name, properties = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (key.includes("-") || key === "role") made.setAttribute(key, value);
    else made[key] = value;
  }
  made.append(...children);
  return made;
}

// The television's clock, which need not be that of this machine, and its local time.
let offset = 0;
let ahead = 0;
export function setClock(time, seconds) {
  offset = seconds;
  const difference = time - Math.floor(Date.now() / 60000) * 60;
  ahead = Math.abs(difference) > 60 ? difference : 0;
}
export function now() { return Date.now() / 1000 + ahead; }
export function local(utc) { return new Date((utc + offset) * 1000).toISOString(); }
export function clock(utc) { return local(utc).slice(11, 16); }
