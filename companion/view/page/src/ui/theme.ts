// Light or dark: the choice of the person, else that of the system.

import type { ViewState } from "../state";

const Dark = "(prefers-color-scheme: dark)";

export function isDark(theme: ViewState["theme"]): boolean {
  return theme === "dark" || (theme === "auto" && window.matchMedia(Dark).matches);
}

export function applyTheme(theme: ViewState["theme"]): void {
  document.documentElement.dataset.theme = isDark(theme) ? "dark" : "light";
}

const Next: Record<ViewState["theme"], ViewState["theme"]> = {
  auto: "light",
  light: "dark",
  dark: "auto",
};

export function nextTheme(theme: ViewState["theme"]): ViewState["theme"] {
  return Next[theme];
}

export function onSystemTheme(call: () => void): void {
  window.matchMedia(Dark).addEventListener("change", call);
}
