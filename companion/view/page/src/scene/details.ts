// The shells of the beams' detail models, in place of the beams: one draw call.

import type { Scene as Group } from "three";
import type { DetailModels } from "../data/page_model";
import type { Frame } from "./frame";
import { mixPlaces, weightsAt } from "./ray";
import type { Ray, SurfaceHit } from "./ray";
import type { Drawing } from "./scene";
import type { SharedUniforms } from "./shaders";
import { colorSurface, createSurface, freeSurface, moveSurface, showElements } from "./surface";
import type { Surface } from "./surface";
import { add, takeVector } from "./vector";

export interface Details {
  models: DetailModels;
  surface: Surface;
}

export function createDetails(
  models: DetailModels,
  frame: Frame,
  shared: SharedUniforms,
  textureWidth: number,
  firstNumber: number,
): Details {
  const places = new Float32Array(models.coordinates.length);
  for (let at = 0; at < places.length; ++at) {
    places[at] = (models.coordinates[at] - frame.centre[at % 3]) / frame.size;
  }
  const quads = models.shells.length / 4;
  const source = { quads, triangles: 0, nodes: models.shells, places };
  const surface = createSurface(source, shared, textureWidth, firstNumber);
  surface.mesh.material.uniforms.edgeStrength.value = 0.18;
  moveSurface(surface, models.displacements, 3);
  return { models, surface };
}

export function showDetails(
  details: Details,
  hiddenBeams: Uint8Array,
  isFiltered: boolean,
  drawing: Drawing,
  isFieldNew: boolean,
): void {
  const { surface, models } = details;
  if (isFiltered) showElements(surface, (shell) => Boolean(hiddenBeams[models.beams[shell]]));
  const field = drawing.detailField;
  if (isFieldNew) colorSurface(surface, field?.upper ?? null, field?.lower ?? null);
}

// Where a ray meets a shell. factor: displacements -> frame of the picture.
export function hitDetail(details: Details, shell: number, ray: Ray, factor: number): SurfaceHit {
  const { surface, models } = details;
  const nodes = [...models.shells.subarray(4 * shell, 4 * shell + 4)];
  const places = nodes.map((node) => takeVector(surface.source.places, node));
  const isMoved = !surface.isLost[shell];
  const drawn = places.map((place, corner) =>
    isMoved ? add(place, takeVector(models.displacements, nodes[corner]), factor) : place,
  );
  const weights = weightsAt(ray, drawn);
  return { place: mixPlaces(places, weights), seen: mixPlaces(drawn, weights) };
}

export function freeDetails(details: Details, scene: Group, pickScene: Group): void {
  scene.remove(details.surface.mesh);
  pickScene.remove(details.surface.pickMesh);
  freeSurface(details.surface);
}
