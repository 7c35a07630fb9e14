#!/usr/bin/python3
"""Holds every #include of src/ against the floors drawn in src/CMakeLists.txt.

A folder may include from the folders that its qvrcom_floor() line names and from theirs, and includes from
each that its line names. The core floors may include the standard library alone. Exit code 1 with one line per breach, 0 when the house is in order.
"""
import pathlib
import re
import sys

# Programs wire everything together; a floor that links a library may include its headers.
PROGRAMS = "programs"
FLOOR = re.compile(r"^qvrcom_floor\((\w+)([^)]*)\)", re.MULTILINE)
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)
STANDARD = re.compile(r"^[a-z_0-9]+$")
FOREIGN_TO_CORE = {"unistd", "windows"}


def read_floors(cmake):
    floors = {}
    for name, rest in FLOOR.findall(cmake):
        words = rest.split()
        depends, links, target = [], [], None
        for word in words:
            if word in ("DEPENDS", "LINKS"):
                target = depends if word == "DEPENDS" else links
            elif target is not None:
                target.append(word)
        floors[name] = (depends, links)
    return floors


def reachable(floors, name, path=()):
    """Every floor below `name`; a cycle is an error with its path."""
    if name in path:
        raise SystemExit("floors in a circle: " + " -> ".join(path + (name,)))
    below = set()
    for floor in floors[name][0]:
        if floor not in floors:
            raise SystemExit(f"{name} depends on {floor}, which is no floor")
        below |= {floor} | reachable(floors, floor, path + (name,))
    return below


def folders_included(folder):
    texts = (source.read_text(encoding="utf-8") for source in folder.rglob("*.[ch]*"))
    return {own.split("/")[0] for text in texts for own, _ in INCLUDE.findall(text) if own}


def breaches_of(source, floor, allowed, links, floors):
    for match in INCLUDE.finditer(source.read_text(encoding="utf-8")):
        own, system = match.groups()
        if own is not None:
            target = own.split("/")[0]
            if "/" not in own or target not in floors | {PROGRAMS}:
                yield f'{source}: include "{own}" by its folder below src/'
            elif target != floor and target not in allowed:
                yield f"{source}: {floor}/ may not include {target}/ ({own})"
        elif not links and (not STANDARD.match(system) or system in FOREIGN_TO_CORE):
            yield f"{source}: {floor}/ links the standard library alone, yet includes <{system}>"


def include_cycles(root):
    """Files that include each other in a circle, each circle once."""
    graph = {}
    for source in root.rglob("*.h"):
        includes = (own for own, _ in INCLUDE.findall(source.read_text(encoding="utf-8")) if own)
        graph[source.relative_to(root).as_posix()] = [name for name in includes if (root / name).exists()]
    done, stack = set(), []

    def visit(name):
        if name in stack:
            yield " -> ".join(stack[stack.index(name):] + [name])
        elif name not in done:
            stack.append(name)
            for child in graph.get(name, []):
                yield from visit(child)
            stack.pop()
            done.add(name)

    for name in sorted(graph):
        yield from visit(name)


def main(root):
    src = pathlib.Path(root) / "src"
    floors = read_floors((src / "CMakeLists.txt").read_text(encoding="utf-8"))
    breaches = []
    for folder in sorted(path for path in src.iterdir() if path.is_dir() and path.name != PROGRAMS):
        if folder.name not in floors:
            breaches.append(f"{folder}: no qvrcom_floor() line names it")
            continue
        allowed = reachable(floors, folder.name)
        unused = set(floors[folder.name][0]) - folders_included(folder)
        breaches += [f"src/CMakeLists.txt: {folder.name} names {floor}, and includes nothing of it"
                     for floor in sorted(unused)]
        for source in sorted(folder.rglob("*.[ch]*")):
            breaches += breaches_of(source, folder.name, allowed, floors[folder.name][1], set(floors))
    breaches += [f"includes in a circle: {circle}" for circle in include_cycles(src)]
    print("\n".join(breaches) if breaches else f"{len(floors)} floors in order")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else "."))
