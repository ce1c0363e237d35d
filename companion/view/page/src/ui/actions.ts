// What controls can ask for. Only main.ts knows how it is done.

import type { Kind } from "../data/page_model";
import type { ViewState } from "../state";

export const ViewNames = ["iso", "top", "bottom", "front", "back", "left", "right"] as const;
export type ViewName = (typeof ViewNames)[number];

export type Place = [number, number, number]; // global, undeformed

export interface Actions {
  change(patch: Partial<ViewState>): void;
  view(name: ViewName): void;
  fit(): void;
  goTo(kind: Kind, number: number, place: Place | null): void; // picks it and flies there
  goToPlace(place: Place): void;
  focusPicture(): void;
  savePicture(): void;
  copyLink(): void;
  openHelp(): void;
  openList(name: ListName | null): void;
  say(text: string): void; // a short word, for a moment
}

export type ListName = "highest" | "findings";
