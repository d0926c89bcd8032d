# SPDX-License-Identifier: MIT
# Runs inside gdb, in a project's folder: see check.sh. Ends with 1 when a line of stops.tsv or
# lines.tsv does not fit.
import os
import re
import sys

import gdb

INTEGERS = (gdb.TYPE_CODE_INT, gdb.TYPE_CODE_CHAR, gdb.TYPE_CODE_BOOL, gdb.TYPE_CODE_ENUM)


def rows(name):
    """Of a file of tabs: its fields by column, without the comments at its top."""
    columns = None
    with open(name, encoding="ascii") as file:
        for number, line in enumerate(file, 1):
            fields = line.rstrip("\n").split("\t")
            if columns is None and fields[0].startswith("# place"):
                columns = [fields[0][2:]] + fields[1:]
            elif not line.startswith("#"):
                assert columns and len(fields) == len(columns), f"{name}:{number}"
                yield dict(zip(columns, fields), number=number)


def shown(value):
    """As stops.tsv writes a value."""
    kind = value.type.strip_typedefs()
    if kind.code in INTEGERS:
        return str(int(value))
    if kind.code == gdb.TYPE_CODE_PTR:
        target = kind.target().strip_typedefs()
        if int(value) == 0:
            return "0"
        if target.code == gdb.TYPE_CODE_FUNC:
            return gdb.block_for_pc(int(value)).function.name
        if target.name == "char":
            return '"' + value.string() + '"'
    if kind.code == gdb.TYPE_CODE_ARRAY and kind.target().strip_typedefs().name == "char":
        return '"' + value.string() + '"'
    raise gdb.error(f"stops.tsv has no such values: {kind}")


def evaluate(expression):
    file = re.match(r"([\w/.]+\.c):(.*)", expression)
    return shown(gdb.parse_and_eval(f"'{file[1]}'::{file[2]}" if file else expression))


def here(frame):
    place = frame.find_sal()
    return f"{place.symtab.filename}:{place.line}" if place.symtab else "no source"


def stack(place):
    """At a function's opening line, which is its entry, gdb stops behind the prologue."""
    frame = gdb.newest_frame()
    frames, frame = [f"{frame.name()} at {place}"], frame.older()
    while frame is not None and frame.find_sal().symtab is not None:
        frames.append(f"{frame.name()} at {here(frame)}")
        frame = frame.older()
    return " < ".join(frames)


def stops(places):
    """Runs from the start, and yields each arrival at one of these places: place, how often."""
    gdb.execute("delete")
    # A line of a header has code in each module that includes it.
    watched = [(gdb.Breakpoint(place), place) for place in places]
    gdb.execute("run", to_string=True)
    arrivals = dict.fromkeys(places, 0)
    while gdb.selected_thread() is not None:
        # Places that are one for gdb, such as a function's opening line, stop at the same time.
        for breakpoint, place in watched:
            if breakpoint.hit_count > arrivals[place]:
                arrivals[place] = breakpoint.hit_count
                yield place, arrivals[place]
        if gdb.selected_frame().name() == "done":
            gdb.execute("kill")
            return
        gdb.execute("continue", to_string=True)


def check_stops(wrong):
    wanted = {}
    for row in rows("stops.tsv"):
        wanted.setdefault((row["place"], int(row["arrival"])), []).append(row)
    checked = 0
    for at in stops(sorted({place for place, _ in wanted} | {"done"})):
        for row in wanted.pop(at, []):
            found = stack(at[0]) if row["kind"] == "stack" else evaluate(row["expression"])
            checked += 1
            if found != row["expected"]:
                wrong(f"stops.tsv:{row['number']}: {row['expression']} is {found}")
    for place, arrival in wanted:
        wrong(f"stops.tsv: {place} is not reached {arrival} times")
    return checked


def step(place, arrival, command):
    """Where a step leads, and the line that called the function it began in."""
    for at in stops([place]):
        if at == (place, arrival):
            gdb.execute("delete")
            caller = here(gdb.newest_frame().older()) if command == "out" else ""
            gdb.execute({"into": "step", "over": "next", "out": "finish"}[command], to_string=True)
            found = here(gdb.newest_frame())
            gdb.execute("kill")
            return found, caller
    return "nowhere: not reached", ""


def check_lines(wrong):
    checked = 0
    for row in rows("lines.tsv"):
        checked += 1
        found, caller = step(row["place"], int(row["arrival"]), row["command"])
        # A call at its line's end returns to the next line's first instruction.
        right = found in (row["expected"], row["also right"])
        if not right or (row["command"] == "out" and caller != row["expected"]):
            wrong(f"lines.tsv:{row['number']}: {row['place']} {row['command']} leads to {found}")
    return checked


def main():
    for setting in ("confirm off", "pagination off", "print inferior-events off"):
        gdb.execute("set " + setting)
    gdb.execute("skip -rfu ^_*(strlen|memcpy)")  # of a C library that has lines
    faults = []
    checked = [check(faults.append) for check in (check_stops, check_lines)]
    project = os.path.basename(os.getcwd())
    counts = f"{checked[0]} facts at stops and {checked[1]} steps, {len(faults)} wrong"
    print(f"{project}: {counts}", *faults, sep="\n", file=sys.stderr)
    gdb.execute(f"quit {1 if faults else 0}")


if __name__ == "__main__":
    main()
