import { act, clock, element, get, local } from "./api.js";

const list = document.getElementById("recording-list");

export async function loadRecordings() {
  let found;
  try {
    found = await get("/recordings");
  } catch {
    return;
  }
  list.replaceChildren(...found.map((one) => {
    const title = one.programme || one.channel;
    const remove = element("button", { type: "button" }, "Delete");
    remove.setAttribute("aria-label", `Delete ${title}`);
    remove.addEventListener("click", async () => {
      await act({ do: "delete recording", index: one.index });
      loadRecordings();
    });
    return element("li", {},
      element("span", {}, `${local(one.start).slice(0, 10)} ${clock(one.start)} `, element("b", {}, title)),
      element("span", { className: "note" },
        `${one.channel}, ${one.seconds} s, ${(one.bytes / 1048576).toFixed(1)} MiB, ${one.ended}`),
      remove);
  }));
  if (!found.length) list.append(element("li", { className: "note" }, "Nothing has been recorded"));
}
