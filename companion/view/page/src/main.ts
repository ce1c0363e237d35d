// The page of `kvx view`: reads the model from the page, draws it, and lets people look at it.
//
// For scripts and tests, window.kvx holds, once the first picture is there,
//   model   PageModel (data/page_model.ts)
//   scene   Scene (scene/scene.ts): pick, project, projectNode, camera, picture, drawCalls ...
//   state   () => ViewState (state.ts), as controls and address have it
//   change  (patch: Partial<ViewState>) => Promise<void>, done when it is shown

import { openCases, readModel } from "./data/load_model";
import { startApp, type Hook } from "./ui/app";
import { findLack, showFailure } from "./ui/notices";

declare global {
  interface Window {
    kvx?: Hook;
  }
}

async function main(page: HTMLElement): Promise<void> {
  const lack = findLack();
  if (lack !== null) {
    showFailure(page, lack);
    return;
  }
  try {
    const model = await readModel(document);
    window.kvx = await startApp(page, model, openCases(document, model));
  } catch (error) {
    const reason = error instanceof Error ? error.message : String(error);
    showFailure(page, `The model cannot be shown. ${reason} Write the page again with kvx view.`);
    throw error; // for the console, with its place
  }
}

const page = document.getElementById("page");
if (page !== null) void main(page);
