#!/usr/bin/env python3
"""Writes the scenes of the README's pictures as glTF files: script/scenes.py FOLDER

still_life.gltf  a goblet of glass, a golden ball, a ring and a plinth for a model of another file
materials.gltf   one shape four times: matt, of metal, painted, of glass
"""
import base64
import json
import math
import struct
import sys

AROUND = 96
# To the right in a picture that the program draws without a camera of the file: x and z.
RIGHT = (0.87, -0.5)


def lathe(profile, around=AROUND):
    """The surface of a line of points (radius, height) turned about y, with normals across it.

    A point that is there twice in a row makes an edge.
    """
    coords, normals, indices, rings = [], [], [], []
    for (r0, y0), (r1, y1) in zip(profile, profile[1:]):
        if (r0, y0) == (r1, y1):
            rings.append(None)
            continue
        rings.append((y1 - y0, r0 - r1))
    for i, (radius, height) in enumerate(profile):
        beside = [ring for ring in (rings[i - 1] if i else None,
                                    rings[i] if i < len(rings) else None) if ring]
        across, up = (sum(part) for part in zip(*beside))
        length = math.hypot(across, up)
        for k in range(around + 1):
            angle = 2 * math.pi * k / around
            cosine, sine = math.cos(angle), math.sin(angle)
            coords.append((radius * cosine, height, radius * sine))
            normals.append((across / length * cosine, up / length, across / length * sine))
    for i, ring in enumerate(rings):
        if ring is None:
            continue
        for k in range(around):
            a, b = i * (around + 1) + k, (i + 1) * (around + 1) + k
            indices += [a, b, a + 1, a + 1, b, b + 1]
    return coords, normals, indices


def arc(radius, height, size, begin, end, steps=24):
    """Points on a circle about (radius, height), from an angle to another, in degrees from below."""
    angles = [math.radians(begin + (end - begin) * i / steps) for i in range(steps + 1)]
    return [(max(radius + size * math.sin(a), 0), height - size * math.cos(a)) for a in angles]


def edges(*parts):
    """Lines one behind the other, with an edge between."""
    return [point for part in parts for point in part]


BALL = lathe(arc(0, 0.5, 0.5, 0, 180, 48))
RING = lathe(arc(0.5, 0.17, 0.17, 0, 360, 48))
PLINTH = lathe(edges([(0.8, 0), (0.8, 0.17)], arc(0.77, 0.17, 0.03, 90, 180, 6),
                     [(0.77, 0.2), (0, 0.2)]))
# Open below: a floor would be in the same place.
GOBLET = lathe(edges([(0.4, 0), (0.4, 0.03), (0.06, 0.08), (0.05, 0.5), (0.1, 0.58)],
                     arc(0, 1.0, 0.44, 18, 110, 30), arc(0, 1.0, 0.41, 110, 0, 30)))
SHAPE = lathe(edges([(0.5, 0), (0.5, 0.1)], [(0.5, 0.1), (0.34, 0.16)],
                    arc(0, 0.62, 0.55, 38, 180, 48)))


def material(name, color, metallic=0.0, roughness=0.5, **extensions):
    entry = {'name': name,
             'pbrMetallicRoughness': {'baseColorFactor': list(color) + [1.0],
                                      'metallicFactor': metallic, 'roughnessFactor': roughness}}
    if extensions:
        entry['extensions'] = {'KHR_materials_' + key: value for key, value in extensions.items()}
    return entry


MATT = material('matt', (0.55, 0.16, 0.1), roughness=0.9)
GOLD = material('metal', (1.0, 0.76, 0.33), metallic=1.0, roughness=0.18)
PAINT = material('paint', (0.02, 0.1, 0.4), roughness=0.35, clearcoat={'clearcoatFactor': 1.0})
GLASS = material('glass', (0.92, 0.97, 1.0), roughness=0.02, ior={'ior': 1.5},
                 transmission={'transmissionFactor': 0.85})
STONE = material('stone', (0.5, 0.47, 0.42), roughness=0.8)


def write(path, things):
    """`things`: the name, mesh, material and place of each."""
    data, views, accessors, meshes, materials, nodes = b'', [], [], [], [], []

    def add(numbers, code, component, kind, count, **more):
        nonlocal data
        views.append({'buffer': 0, 'byteOffset': len(data), 'byteLength': 4 * len(numbers)})
        data += struct.pack('<%d%s' % (len(numbers), code), *numbers)
        accessors.append({'bufferView': len(views) - 1, 'componentType': component, 'type': kind,
                          'count': count, **more})
        return len(accessors) - 1

    for name, (coords, normals, indices), look, place in things:
        low = [min(axis) for axis in zip(*coords)]
        high = [max(axis) for axis in zip(*coords)]
        position = add([x for v in coords for x in v], 'f', 5126, 'VEC3', len(coords),
                       min=low, max=high)
        normal = add([x for v in normals for x in v], 'f', 5126, 'VEC3', len(normals))
        index = add(indices, 'I', 5125, 'SCALAR', len(indices))
        if look not in materials:
            materials.append(look)
        meshes.append({'name': name, 'primitives': [{
            'attributes': {'POSITION': position, 'NORMAL': normal}, 'indices': index,
            'material': materials.index(look)}]})
        nodes.append({'name': name, 'mesh': len(meshes) - 1, 'translation': place})
    uri = 'data:application/octet-stream;base64,' + base64.b64encode(data).decode()
    used = sorted({key for look in materials for key in look.get('extensions', {})})
    with open(path, 'w', encoding='utf-8') as file:
        json.dump({'asset': {'version': '2.0'}, 'extensionsUsed': used, 'scene': 0,
                   'scenes': [{'nodes': list(range(len(nodes)))}], 'nodes': nodes,
                   'meshes': meshes, 'materials': materials, 'accessors': accessors,
                   'bufferViews': views, 'buffers': [{'byteLength': len(data), 'uri': uri}]}, file)


def main():
    folder = sys.argv[1]
    write(folder + '/still_life.gltf',
          [('plinth', PLINTH, STONE, [0, 0, 0]), ('ball', BALL, GOLD, [1.35, 0, 0.55]),
           ('ring', RING, MATT, [-1.3, 0, 0.6]), ('goblet', GOBLET, GLASS, [0.55, 0, 1.35])])
    write(folder + '/materials.gltf',
          [(look['name'], SHAPE, look, [1.25 * i * RIGHT[0], 0, 1.25 * i * RIGHT[1]])
           for i, look in enumerate((MATT, GOLD, PAINT, GLASS))])


main()
