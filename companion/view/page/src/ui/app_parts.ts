// What the parts of the page share.

import type { AddressLimits } from "./address";
import type { Page } from "./page";
import type { Shown } from "./shown";
import type { Store } from "./store";
import type { PageModel } from "../data/page_model";
import type { Scene } from "../scene/scene";
import type { ViewState } from "../state";

export interface App {
  model: PageModel;
  page: Page;
  scene: Scene;
  store: Store;
  defaults: ViewState;
  limits: AddressLimits;
  shown: Shown | null; // what is on the screen now
  written: string; // the address as it was written last
  timer: number;
}
