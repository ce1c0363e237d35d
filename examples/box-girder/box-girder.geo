// Box girder of 12 m between two bearings: flanges, webs, five diaphragms, three stiffeners below
// the upper flange. N, mm. x along the girder, z upwards.
//
//   gmsh -2 box-girder.geo
//
// writes box-girder.msh, which kvx import reads with map.toml.

length = 12000;
width = 2000;
height = 1000;
bays = 4;      // between diaphragms
size = 250;    // of the elements

// The section at x = 0: lower flange (1 to 5), upper flange (6 to 10), both in four strips, as the
// stiffeners stand between them.
strips = 4;
For k In {0 : strips}
  Point(1 + k) = {0, -width / 2 + k * width / strips, 0};
  Point(6 + k) = {0, width / 2 - k * width / strips, height};
EndFor
For k In {1 : 9}
  Line(k) = {k, k + 1};
EndFor
Line(10) = {10, 1};
Transfinite Curve {1 : 4, 6 : 9} = width / strips / size + 1;
Transfinite Curve {5, 10} = height / size + 1;
Curve Loop(1) = {1 : 10};
Plane Surface(1) = {1};
Transfinite Surface {1} = {1, 5, 6, 10};
Recombine Surface {1};

// Bay by bay along x. Of what Extrude returns, 0 is the section at the end, 2 to 11 are the strips
// along the lines 1 to 10.
diaphragms[] = {1};
upper[] = {};
lower[] = {};
webs[] = {};
section = 1;
For bay In {1 : bays}
  new[] = Extrude {length / bays, 0, 0} {
    Surface {section};
    Layers {length / bays / size};
    Recombine;
  };
  section = new[0];
  diaphragms[] += {section};
  lower[] += {new[2], new[3], new[4], new[5]};
  webs[] += {new[6], new[11]};
  upper[] += {new[7], new[8], new[9], new[10]};
EndFor

// Lines are found by where they lie.
e = 1;
stiffeners[] = {};
For k In {1 : strips - 1}
  y = -width / 2 + k * width / strips;
  stiffeners[] += Curve In BoundingBox {-e, y - e, height - e, length + e, y + e, height + e};
EndFor

Physical Surface("upper flange") = {upper[]};
Physical Surface("lower flange") = {lower[]};
Physical Surface("webs") = {webs[]};
Physical Surface("diaphragms") = {diaphragms[]};
Physical Curve("stiffeners") = {stiffeners[]};
Physical Curve("fixed bearing") = {1 : 4};
Physical Curve("free bearing") = Curve In BoundingBox {length - e, -width, -e, length + e, width, e};
