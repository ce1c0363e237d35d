// The shapes of glyphs, as triangles. Each points along +z; its size is about 1.

import { BoxGeometry, BufferGeometry, ConeGeometry, CylinderGeometry } from "three";
import { Float32BufferAttribute, OctahedronGeometry, TorusGeometry } from "three";

export type Shape = "arrow" | "doubleArrow" | "cone" | "ring" | "cube" | "diamond";

const Sides = 14; // of round shapes: they are some 20 pixels large

// Positions of triangles, three numbers a corner.
export function makeShape(shape: Shape): BufferGeometry {
  if (shape === "cone") return joinShapes([cone(0, 1, 0.36)]);
  if (shape === "ring") return joinShapes([new TorusGeometry(0.45, 0.05, 6, 20)]);
  if (shape === "diamond") return joinShapes([new OctahedronGeometry(0.55)]);
  if (shape === "cube") return joinShapes([new BoxGeometry(0.8, 0.8, 0.8)]);
  const shaft = new CylinderGeometry(0.018, 0.018, 0.78, 8).rotateX(Math.PI / 2);
  const parts = [shaft.translate(0, 0, -0.61), cone(0, 0.26, 0.085)];
  if (shape === "doubleArrow") parts.push(cone(-0.2, 0.26, 0.085));
  return joinShapes(parts);
}

// With its tip at z = tip.
function cone(tip: number, height: number, radius: number): BufferGeometry {
  const geometry = new ConeGeometry(radius, height, Sides).rotateX(Math.PI / 2);
  return geometry.translate(0, 0, tip - height / 2);
}

function joinShapes(parts: BufferGeometry[]): BufferGeometry {
  const positions: number[] = [];
  for (const part of parts) {
    const flat = part.index ? part.toNonIndexed() : part;
    positions.push(...flat.getAttribute("position").array);
  }
  const joined = new BufferGeometry();
  joined.setAttribute("position", new Float32BufferAttribute(positions, 3));
  return joined;
}
