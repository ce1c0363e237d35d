// Where a ray meets the surface of a beam as it is drawn: what its shaders do, for one beam.

import { moveInSection } from "./beam_line";
import { drawnMotion } from "./beams";
import type { Beams } from "./beams";
import { meetTriangle, mixPlaces } from "./ray";
import type { Ray, SurfaceHit } from "./ray";
import { add, dot, subtract, times } from "./vector";
import type { Vector } from "./vector";

// factor: displacements -> frame of the picture. The nearest place; null where the beam is a line,
// or the ray passes by.
export function hitBeam(
  beams: Beams,
  beam: number,
  displacements: Float32Array | null,
  factor: number,
  ray: Ray,
): SurfaceHit | null {
  const line = beams.lines[beam];
  const group = beams.sections.find(({ section }) => section === beams.model.beams.section[beam]);
  if (!line || !group) return null;
  const { points, triangles } = group.extrusion;
  const [first, second] = drawnMotion(beams, beam, displacements);
  const rest: Vector[] = [];
  const drawn: Vector[] = [];
  for (let at = 0; at < points.length; at += 3) {
    const [y, z, s] = points.subarray(at, at + 3);
    const onLine = add(times(line.start, 1 - s), line.end, s);
    const place = add(add(onLine, line.y, y / beams.size), line.z, z / beams.size);
    rest.push(place);
    drawn.push(add(place, moveInSection(line, first, second, s, y, z), factor));
  }
  let nearest: SurfaceHit | null = null;
  let least = Infinity;
  for (let at = 0; at < triangles.length; at += 3) {
    const corners = [...triangles.subarray(at, at + 3)];
    const seen = corners.map((corner) => drawn[corner]);
    const weights = meetTriangle(ray, seen[0], seen[1], seen[2]);
    if (!(Math.min(...weights) >= 0)) continue;
    const place = mixPlaces(seen, weights);
    const depth = dot(subtract(place, ray.from), ray.along);
    if (depth >= least) continue;
    least = depth;
    nearest = { place: mixPlaces(corners.map((corner) => rest[corner]), weights), seen: place };
  }
  return nearest;
}
