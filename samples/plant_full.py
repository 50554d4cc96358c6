#!/usr/bin/env python3
"""Writes the full sample: the plant of plant.json grown to hold every class of the catalogue.

Beside the plant's piping, equipment and steel it has every steel section, elbows mitred and
reducing, a hubbed flange, curves of every kind, a patch with a hole, an extrusion, a terrain mesh
of more than 32767 vertices (so the import cuts it in pieces), a small point cloud, contours with
labels, a group inside an exclusion volume, annotations of all three kinds and three coordinate
systems. The mesh is why this is a script: as text it would be most of a megabyte.

Usage: plant_full.py plant.json OUT.json
"""
import json
import math
import sys

RIGHT = 1.5707963705062866  # the file's right angle, a single-precision value


def pose(t, r=None):
    params = [["translation", "double[]", list(t)]]
    if r is not None:
        params.append(["rotation", "double[]", list(r)])
    return ["pose", "object", {"class": "Transformation", "params": params}]


def colour(rgb):
    return ["appearance", "object", {"class": "Appearance", "params": [
        ["diffuseColor", "byte[]", list(rgb)], ["ambientColor", "byte[]", list(rgb)]]}]


def notes(**values):
    kinds = {int: ("IntAnnotation", "int"), float: ("DblAnnotation", "double"),
             str: ("StrAnnotation", "string")}
    params = []
    for name, value in values.items():
        cls, typ = kinds[type(value)]
        params.append([name, "object", {"class": cls, "params": [["value", typ, value]]}])
    return ["annotations", "object", {"class": "Annotations", "params": params}]


def obj(cls, *params):
    return {"class": cls, "params": list(params)}


STEEL = (170, 60, 40)
PIPE = (30, 90, 200)
GREY = (150, 150, 150)


def piping():
    return [
        obj("Elbow", ["majorRadius", "double", 0.3], ["minorRadius", "double", 0.1],
            ["endAngle", "double", RIGHT], ["miterCount", "short", 3],
            pose([3.3, 2.6, 1.2], [0, 0, 1, RIGHT]), colour(PIPE)),
        obj("Elbow", ["majorRadius", "double", 0.25], ["minorRadius", "double", 0.08],
            ["endAngle", "double", RIGHT], ["miterCount", "short", -1],
            pose([12, 0, 1.2]), colour(PIPE)),
        obj("ReducingElbow", ["majorRadius", "double", 0.3], ["minorRadius", "double", 0.1],
            ["minorRadius1", "double", 0.06], ["endAngle", "double", RIGHT],
            ["miterCount", "short", 0], pose([12, 2, 1.2], [1, 0, 0, RIGHT]), colour(PIPE)),
        obj("Flange", ["type", "int", 2], ["radius", "double", 0.1], ["height", "double", 0.12],
            ["flangeradius", "double", 0.2], ["flangeheight", "double", 0.03],
            pose([12, 4, 1.2]), colour(PIPE)),
        obj("Cylinder", ["radius", "double", 0.06], ["height", "double", 1.5],
            ["cap0", "object", {"class": "FlatCap", "params": []}],
            pose([3.3, 2.55, 1.2], [1, 0, 0, -RIGHT]), colour(PIPE),
            notes(LineNumber="P-102-080", NominalSize=80, DesignPressure=16.5)),
    ]


def steel():
    sections = [("SteelTee", 0.15, 0.15), ("SteelChannel", 0.1, 0.2),
                ("SteelRectangularTube", 0.15, 0.1), ("SteelBar", 0.05, 0.05)]
    out = []
    for i, (section, width, depth) in enumerate(sections):
        out.append(obj("StdShapeExtrusion", ["sectionType", "string", section],
                       ["width", "double", width], ["depth", "double", depth],
                       ["flangeThickness", "double", 0.012], ["webThickness", "double", 0.008],
                       ["length", "double", 2.5], pose([1 + i, -1, 0]), colour(STEEL)))
    for i, section in enumerate(["Rectangle", "Square", "SteelWideFlange", "SteelAngle"]):
        params = [["sectionType", "string", section], ["width", "double", 0.2]]
        if section != "Square":
            params.append(["depth", "double", 0.3])
        params += [["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01]]
        out.append(obj("StdShape", *params, pose([i, -4, 0]), colour(STEEL)))
    return out


def curves():
    return [
        obj("CircularArc3d", ["radius", "double", 1.0], ["endAngle", "double", RIGHT],
            pose([0, 4, 0]), colour(GREY)),
        obj("EllipticArc3d", ["radiusX", "double", 1.5], ["radiusY", "double", 0.75],
            ["startAngle", "double", 0.0], ["endAngle", "double", 3.1415927410125732],
            pose([3, 4, 0]), colour(GREY)),
        obj("BSplineCurve3d", ["fitPoints", "double[]", [0, 6, 0, 1, 6.5, 0, 2, 6, 0.5, 3, 7, 0]],
            ["order", "int", 4], ["startVec", "double[]", [1, 0, 0]],
            ["endVec", "double[]", [1, 0, 0]], colour(GREY)),
        # The module takes a file's "order" for the curve's degree: five poles and the knots of
        # a clamped curve of degree 4.
        obj("BSplineCurve3d",
            ["poles", "double[]", [4, 6, 0, 5, 7, 0, 6, 6, 0, 7, 7, 0, 8, 6.5, 0]],
            ["order", "int", 4], ["periodic", "bool", False], ["rational", "bool", False],
            ["weights", "double[]", [1, 1, 1, 1, 1]],
            ["knots", "double[]", [0, 0, 0, 0, 0, 1, 1, 1, 1, 1]], colour(GREY)),
        obj("Vertex3d", ["position", "double[]", [8, 6, 0]], colour(GREY)),
    ]


def surfaces():
    return [
        obj("PlanarPolylineExtrusion",
            ["vertices", "double[]", [0, 0, 2, 0, 2, 1, 1, 1.5, 0, 1]],
            ["height", "double", 0.2], ["direction", "double[]", [0, 0, 1]],
            pose([14, -3, 0]), colour(GREY)),
    ]


def terrain(n=182, step=0.25):
    """A grid of n by n vertices, one triangle strip per row: more than 32767 vertices."""
    vertices = []
    for j in range(n):
        for i in range(n):
            x, y = i * step, j * step
            vertices += [x, y, round(0.5 * math.sin(x / 5) * math.cos(y / 7), 3)]
    indices, lens = [], []
    for j in range(n - 1):
        for i in range(n):
            indices += [j * n + i, (j + 1) * n + i]
        lens.append(2 * n)
    return obj("TriMesh", ["vertexCount", "int", n * n], ["vertices", "float[]", vertices],
               ["faceCount", "int", (n - 1) * 2 * (n - 1)], ["triStripIndices", "int[]", indices],
               ["triStripLens", "int[]", lens], pose([-50, -50, -2]), colour((110, 140, 80)),
               notes(Survey="Site terrain 2025"))


def cloud():
    points, intensities = [], []
    for k in range(200):
        a = k * 0.3
        points += [round(20 + math.cos(a) * (1 + k / 100), 4), round(math.sin(a) * (1 + k / 100), 4),
                   round(k / 50, 4)]
        intensities.append(-32768 + k * 300)
    return obj("Pointset", ["points", "float[]", points], ["intensities", "short[]", intensities],
               ["minIntensity", "float", 0.0], ["maxIntensity", "float", 1.0],
               pose([0, 0, 0]), notes(Scanner="Station 4"))


def contours():
    # Three planes of one closed polyline each, five vertices a polyline, labelled twice a plane.
    vertices = []
    for p in range(3):
        r = 3 - p
        vertices += [r, 0, 0, r, -r, 0, 0, -r, r, 0]
    return obj("ContourObj", ["contourVertices", "double[]", vertices],
               ["planeStartIndices", "int[]", [0, 1, 2]],
               ["polylineStartIndices", "int[]", [0, 5, 10]],
               ["startPlaneIdx", "int", 2], ["numMinorIntervals", "int", 5],
               ["majorInterval", "double", 2.5],
               ["elevationPosCounts", "int[]", [2, 2, 2]],
               ["elevationPositions", "double[]", [3, 0, -3, 0, 2, 0, -2, 0, 1, 0, -1, 0]],
               ["elevationVectors", "double[]", [0, 1, 0, -1, 0, 1, 0, -1, 0, 1, 0, -1]],
               ["velmoraGraphicsParam", "object", {"class": "VelmoraGraphicsParam", "params": [
                   ["elevationCtrl", "int", 0], ["elevationUnit", "int", 1],
                   ["elevationSize", "double", 0.2], ["elevationColor", "byte[]", [90, 60, 20]]]}],
               pose([30, 0, 0]), colour((90, 60, 20)), notes(Contours="Pond"))


def main():
    plant = json.load(open(sys.argv[1]))["objects"]
    # The plant's own objects up to its group, and where its layers put them.
    layers = {o["params"][0][2]: o["params"][1][2] for o in plant if o["class"] == "Layer"}
    objects = plant[:20]
    systems = next(o for o in plant if o["class"] == "CoordSysMgr")
    view = next(o for o in plant if o["class"] == "ModelSpaceView")

    def add(items, layer):
        for item in items:
            layers[layer].append(len(objects))
            objects.append(item)

    add(piping(), "Piping")
    add(steel(), "Steel")
    add(curves(), "Steel")
    add(surfaces(), "Equipment")
    layers["Terrain"] = []
    add([terrain(), cloud(), contours()], "Terrain")
    # A group of a box and a sphere inside an exclusion volume.
    members = len(objects)
    objects.append(obj("RectangularBox", ["height", "double", 1], ["width", "double", 1],
                       ["depth", "double", 1], pose([16, 4, 0.5]), colour((40, 160, 70))))
    objects.append(obj("Sphere", ["radius", "double", 0.3], pose([16, 4, 1.3]),
                       colour((40, 160, 70))))
    group = len(objects)
    objects.append(obj("GeometricGroup", ["objectList", "uint[]", [members, members + 1]],
                       pose([0, 0, 0], [0, 0, 1, 0]), notes(Tag="Pump package")))
    layers["Exclusion"] = [len(objects)]
    objects.append(obj("ExclusionVolume", ["objectList", "uint[]", [group]],
                       ["thickness", "double[]", [2, 2, 2.5]], pose([15, 3, 0]),
                       notes(Zone="Keep clear", Clearance=1.5)))

    layer_numbers = []
    colours = {"Piping": PIPE, "Equipment": (40, 160, 70), "Steel": STEEL,
               "Terrain": (110, 140, 80), "Exclusion": (220, 200, 40)}
    for name, members_of in layers.items():
        layer_numbers.append(len(objects))
        objects.append(obj("Layer", ["name", "string", name], ["objectList", "uint[]", members_of],
                           colour(colours[name]), ["layerProperties", "uint", 0]))
    manager = len(objects)
    objects.append(obj("LayerMgr", ["layerList", "uint[]", layer_numbers]))
    systems = json.loads(json.dumps(systems))
    systems["params"][0][2]["params"].append(
        ["Terrain", "object", {"class": "Transformation", "params": [
            ["translation", "double[]", [-50, -50, -2]], ["rotation", "double[]", [0, 0, 1, 0]]]}])
    system_manager = len(objects)
    objects.append(systems)
    view = json.loads(json.dumps(view))
    for p in view["params"]:
        if p[0] == "coordSysMgr":
            p[2] = system_manager
        if p[0] == "layerOverrides":
            p[2] = [2, 0, 1, 0, 0]
    view_number = len(objects)
    objects.append(view)
    top = [n for name in layers for n in layers[name]]
    model_space = len(objects)
    objects.append(obj("ModelSpace", ["name", "string", "Sample plant, every class"],
                       ["objectList", "uint[]", sorted(top)], ["layerMgr", "uint", manager],
                       ["modelSpaceViewList", "uint[]", [view_number]],
                       ["defCoordSys", "object", {"class": "Transformation", "params": [
                           ["translation", "double[]", [0, 0, 0]],
                           ["rotation", "double[]", [0, 0, 1, 0]]]}]))
    objects.append(obj("Header", ["rootLocation", "uint", model_space], ["version", "uint", 1],
                       ["application", "string", "QelIn sample"],
                       ["source", "string", "plant_full.py"]))
    with open(sys.argv[2], "w") as out:
        json.dump({"format": "qel-json-1", "objects": objects}, out)


if __name__ == "__main__":
    main()
