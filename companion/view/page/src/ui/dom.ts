// Makes elements of the page. Texts are set as text, never as HTML: names of a model may hold
// anything.

export interface Settings {
  class?: string;
  text?: string;
  title?: string;
  label?: string; // aria-label
  attributes?: Record<string, string>;
}

export type Child = Node | string | null;

export function make<Tag extends keyof HTMLElementTagNameMap>(
  tag: Tag,
  settings: Settings = {},
  ...children: Child[]
): HTMLElementTagNameMap[Tag] {
  const made = document.createElement(tag);
  if (settings.class !== undefined) made.className = settings.class;
  if (settings.text !== undefined) made.textContent = settings.text;
  if (settings.title !== undefined) made.title = settings.title;
  if (settings.label !== undefined) made.setAttribute("aria-label", settings.label);
  for (const [name, value] of Object.entries(settings.attributes ?? {})) {
    made.setAttribute(name, value);
  }
  made.append(...children.filter((child): child is Node | string => child !== null));
  return made;
}

// A text that is written only where it differs, so that selections and live regions stay calm.
export function setText(element: Element, text: string): void {
  if (element.textContent !== text) element.textContent = text;
}

export function makeButton(
  settings: Settings,
  call: () => void,
  ...children: Child[]
): HTMLButtonElement {
  const button = make("button", settings, ...children);
  button.type = "button";
  button.addEventListener("click", call);
  return button;
}

// A check box with its text, as one label.
export function makeCheckBox(
  text: string,
  call: (isChecked: boolean) => void,
): { root: HTMLLabelElement; box: HTMLInputElement } {
  const box = make("input", { attributes: { type: "checkbox" } });
  box.addEventListener("change", () => call(box.checked));
  return { root: make("label", { class: "check" }, box, make("span", { text })), box };
}

export interface Choice {
  value: string;
  text: string;
  group?: string; // heading under which it stands
  title?: string; // what the pointer is told
}

// A list to choose from; choices of one group that follow one another stand under its heading.
export function fillSelect(select: HTMLSelectElement, choices: Choice[]): void {
  select.replaceChildren();
  let parent: HTMLElement = select;
  let group: string | undefined;
  for (const choice of choices) {
    if (choice.group !== group) {
      group = choice.group;
      parent = select;
      if (group !== undefined) {
        parent = make("optgroup", { attributes: { label: group } });
        select.append(parent);
      }
    }
    const { text, title = "", value } = choice;
    parent.append(make("option", { text, title, attributes: { value } }));
  }
}

export function makeSelect(
  label: string,
  choices: Choice[],
  call: (value: string) => void,
): HTMLSelectElement {
  const select = make("select", { label });
  fillSelect(select, choices);
  select.addEventListener("change", () => call(select.value));
  return select;
}

export interface Segments {
  root: HTMLFieldSetElement;
  set(value: string): void;
  enable(isEnabled: boolean): void;
}

// A few choices side by side, of which one holds: native radio buttons, so that arrows move.
export function makeSegments(
  legend: string,
  choices: Choice[],
  call: (value: string) => void,
): Segments {
  const name = `segments-${legend.toLowerCase().replace(/[^a-z]+/g, "-")}`;
  const inputs: HTMLInputElement[] = [];
  const row = make("div", { class: "segments" });
  for (const choice of choices) {
    const input = make("input", { attributes: { type: "radio", name, value: choice.value } });
    input.addEventListener("change", () => call(choice.value));
    inputs.push(input);
    const settings = { title: choice.title ?? "" };
    row.append(make("label", settings, input, make("span", { text: choice.text })));
  }
  const root = make("fieldset", { class: "field" }, make("legend", { text: legend }), row);
  return {
    root,
    set(value: string): void {
      for (const input of inputs) input.checked = input.value === value;
    },
    enable(isEnabled: boolean): void {
      root.disabled = !isEnabled;
    },
  };
}

// A control below its name.
export function makeField(text: string, control: HTMLElement): HTMLLabelElement {
  return make("label", { class: "field" }, make("span", { class: "name", text }), control);
}

// A part of the panel that can be folded.
export function makeGroup(
  title: string,
  isOpen: boolean,
  ...children: Child[]
): HTMLDetailsElement {
  const group = make(
    "details",
    { class: "group" },
    make("summary", { text: title }),
    make("div", { class: "body" }, ...children),
  );
  group.open = isOpen;
  return group;
}
