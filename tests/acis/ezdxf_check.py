#!/usr/bin/env python3
"""Reads a SAT file with ezdxf's ACIS parser and checks its structure.

Usage: ezdxf_check.py FILE FACES [MESH_VERTICES]

Exits 0 when the file parses into one body with FACES faces whose coedge rings close and point
back to their loops; with MESH_VERTICES, the body (planar faces only) must also turn into a mesh
of that many vertices. Exits 77 when ezdxf is not installed, 1 with a message otherwise.
"""
import sys

try:
    from ezdxf.acis import api
except ImportError:
    sys.exit(77)


def main():
    path, faces = sys.argv[1], int(sys.argv[2])
    with open(path, encoding="utf-8") as f:
        bodies = api.load(f.read())
    if len(bodies) != 1:
        sys.exit(f"{len(bodies)} bodies, expected 1")
    seen = 0
    for lump in bodies[0].lumps():
        for shell in lump.shells():
            for face in shell.faces():
                seen += 1
                if face.surface.is_none:
                    sys.exit(f"face {seen} has no surface")
                for loop in face.loops():
                    for coedge in loop.coedges():
                        if coedge.loop is not loop or coedge.edge.is_none:
                            sys.exit(f"face {seen}: a coedge is not tied to its loop and edge")
                        if coedge.next_coedge.prev_coedge is not coedge:
                            sys.exit(f"face {seen}: the coedge ring does not link back")
    if seen != faces:
        sys.exit(f"{seen} faces, expected {faces}")
    if len(sys.argv) > 3:
        mesh = api.mesh_from_body(bodies[0])[0]
        if len(mesh.vertices) != int(sys.argv[3]):
            sys.exit(f"mesh of {len(mesh.vertices)} vertices, expected {sys.argv[3]}")


main()
