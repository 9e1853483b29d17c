#!/usr/bin/env python3
"""The comparison runner: each hot path of the library against its reference.

Runs the Google Benchmark programs of bench/ with their benchmarks in random
interleaved order and several repetitions in one process, takes the minimum
CPU time of each benchmark over the repetitions, and prints one markdown
table of ratios (reference time / our time: above 1 we are faster), with the
allocations per operation that the programs' counting malloc saw.  `nxtm
sort` is measured against GNU sort (C locale, one thread) on generated name
lists, the two programs taking turns.

    python3 bench/compare.py                 # print the section
    python3 bench/compare.py --readme        # and write it into README.md
    python3 bench/compare.py --only Dispatch --no-sort   # a quick look

Build first: cmake --workflow --preset default (or cmake --build --preset
default).  The machine may be shared and noisy; only figures of one run,
interleaved, are set beside each other.

A new hot path joins the table with one entry in ROWS below (its benchmark
and its reference's benchmark in one program of bench/).
"""

import argparse
import datetime
import json
import math
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap
from dataclasses import dataclass
from typing import Dict, List, Optional

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


@dataclass
class Row:
    group: str       # first column: what is measured
    operation: str
    program: str     # bench/bench_<topic>.cpp
    ours: str        # benchmark name (as the program lists it)
    reference: str   # what the reference is, shown in the row
    ref_bench: str
    target: Optional[float] = None  # smallest acceptable ratio
    per: int = 1     # operations in one benchmark iteration (both sides)


def dispatch(slot: str, label: str) -> Row:
    return Row("Dispatch", label, "bench_dispatch", f"BM_Manager_{slot}",
               "the row's function called directly", f"BM_Direct_{slot}", 1 / 1.05, per=4)


ROWS: List[Row] = [
    dispatch("CreateDelete", "`Create` + `Delete`, one long"),
    dispatch("DefaultValueDelete", "`DefaultValue` + `Delete`"),
    dispatch("Store", "`Store`, one long, format 2"),
    dispatch("Load", "`Load`, one long, format 2"),
    dispatch("DiskLenGet", "`DiskLenGet`"),
    dispatch("DiskLenGetFromMemFile", "`DiskLenGetFromMemFile`"),
    dispatch("Cmp", "`Cmp`, long form, memory"),
    dispatch("CmpShort", "`Cmp`, short form, memory"),
    dispatch("EvalAndBound", "`EvalAndBound`, no narrowing"),
    dispatch("Hash", "`Hash`, memory"),
    dispatch("Translate", "`Translate`, memory to format 2"),
    dispatch("IsNullValue", "`IsNullValue`"),

    Row("Disk forms", "`Store` 4096 long, format 1", "bench_disk", "BM_StoreArray/2/1",
        "`memcpy` of the bytes", "BM_MemcpyArray/4", 0.9),
    Row("Disk forms", "`Load` 4096 long, format 1", "bench_disk", "BM_LoadArray/2/1",
        "`memcpy` of the bytes", "BM_MemcpyArray/4", 0.9),
    Row("Disk forms", "`Store` 4096 short, format 2", "bench_disk", "BM_StoreArray/1/2",
        "`memcpy` of the bytes", "BM_MemcpyArray/2", 0.5),
    Row("Disk forms", "`Load` 4096 short, format 2", "bench_disk", "BM_LoadArray/1/2",
        "`memcpy` of the bytes", "BM_MemcpyArray/2", 0.5),
    Row("Disk forms", "`Store` 4096 long, format 2", "bench_disk", "BM_StoreArray/2/2",
        "`memcpy` of the bytes", "BM_MemcpyArray/4", 0.5),
    Row("Disk forms", "`Load` 4096 long, format 2", "bench_disk", "BM_LoadArray/2/2",
        "`memcpy` of the bytes", "BM_MemcpyArray/4", 0.5),
    Row("Disk forms", "`Store` 4096 double, format 2", "bench_disk", "BM_StoreArray/3/2",
        "`memcpy` of the bytes", "BM_MemcpyArray/8", 0.5),
    Row("Disk forms", "`Load` 4096 double, format 2", "bench_disk", "BM_LoadArray/3/2",
        "`memcpy` of the bytes", "BM_MemcpyArray/8", 0.5),
    Row("Disk forms", "`Store` 4096 NxNull_long, format 2", "bench_disk", "BM_NullStore/2",
        "`memcpy` of the bytes", "BM_NullMemcpy"),
    Row("Disk forms", "`Load` 4096 NxNull_long, format 2", "bench_disk", "BM_NullLoad/2",
        "`memcpy` of the bytes", "BM_NullMemcpy"),
    Row("Keys", "`Cmp` of two long keys, format 2", "bench_disk", "BM_KeyCmp<int32_t>",
        "two `Load`s and a native compare", "BM_KeyLoadCompare<int32_t>", 1 / 1.5),
    Row("Keys", "`Cmp` of two double keys, format 2", "bench_disk", "BM_KeyCmp<double>",
        "two `Load`s and a native compare", "BM_KeyLoadCompare<double>", 1 / 1.5),

    Row("Collation", "`GetNextOrder`, 16 K chars of Latin-1 prose", "bench_collation",
        "BM_GetNextOrder_Latin1", "ICU `ucol_next`", "BM_IcuNext_Latin1", 1.5),
    Row("Collation", "`GetNextOrder`, the same prose in UTF-16", "bench_collation",
        "BM_GetNextOrder_Unicode", "ICU `ucol_next`", "BM_IcuNext_Unicode", 1.5),
    Row("Collation", "`GetNextOrder`, names in several scripts", "bench_collation",
        "BM_GetNextOrder_Names", "ICU `ucol_next`", "BM_IcuNext_Names", 1.5),
    Row("Collation", "`NxStrCmp`, full strength, names in several scripts", "bench_strcmp",
        "BM_NxStrCmp_Full", "ICU `ucol_strcoll`, tertiary", "BM_Icu_Tertiary", 2.0),
    Row("Collation", "`NxStrCmp`, case and accents ignored, same names", "bench_strcmp",
        "BM_NxStrCmp_Primary", "ICU `ucol_strcoll`, primary", "BM_Icu_Primary", 2.0),
    Row("Sort keys", "`NxStrSortKey`, full strength, one name", "bench_sortkey",
        "BM_SortKey/full", "ICU `ucol_getSortKey`, tertiary", "BM_IcuSortKey/tertiary"),
    Row("Sort keys", "`NxStrSortKey`, case and accents ignored", "bench_sortkey",
        "BM_SortKey/ci_ai", "ICU `ucol_getSortKey`, primary", "BM_IcuSortKey/primary"),

    Row("String keys", "`Translate` of a name to a key record, UTF-16", "bench_strdisk",
        "BM_Key_Nx_Unicode", "ICU `ucol_getSortKey`, tertiary", "BM_Key_Icu_Unicode", 1.0),
    Row("String keys", "`Translate` of a name to a key record, Latin-1", "bench_strdisk",
        "BM_Key_Nx_Latin1", "ICU `ucol_getSortKey`, tertiary", "BM_Key_Icu_Latin1", 1.0),
    Row("String keys", "`Cmp` of two key records of names", "bench_strkeys",
        "BM_KeyRecordsThroughTheRow", "`NxStrCmp` on the two texts", "BM_NxStrCmpOnTheTexts"),
    Row("String keys", "`Cmp` of two key records of names", "bench_strkeys",
        "BM_KeyRecordsThroughTheRow", "`strcmp` of two ICU sort keys", "BM_IcuSortKeysStrcmp"),
    Row("String keys", "`StringStore` of a long 8-bit text", "bench_strdisk", "BM_Record_Store",
        "`memcpy` of the same bytes", "BM_Record_Memcpy", 0.5),
    Row("String keys", "`StringLoad` of a long 8-bit text", "bench_strdisk", "BM_Record_Load",
        "`memcpy` of the same bytes", "BM_Record_Memcpy", 0.5),

    Row("Hashing", "`HashString`, 66 names, code set 1", "bench_hash", "BM_HashString_8bit/0",
        "FNV-1a of the bytes (no collation)", "BM_Fnv1a_8bit/0"),
    Row("Hashing", "`HashString`, 66 names, code set 1", "bench_hash", "BM_HashString_8bit/0",
        "ICU `ucol_getSortKey` + FNV-1a", "BM_Icu_SortKeyHash/0"),
    Row("Hashing", "`HashString`, 4 KB of prose, code set 1", "bench_hash",
        "BM_HashString_8bit/1", "FNV-1a of the bytes (no collation)", "BM_Fnv1a_8bit/1"),
    Row("Hashing", "`HashString`, 66 names, UTF-16", "bench_hash", "BM_HashString_Unicode/0",
        "FNV-1a of the bytes (no collation)", "BM_Fnv1a_Unicode/0"),
    Row("Hashing", "`HashString`, 4 KB of prose, UTF-16", "bench_hash",
        "BM_HashString_Unicode/1", "FNV-1a of the bytes (no collation)", "BM_Fnv1a_Unicode/1"),

    Row("Class keys", "`Cmp` of two NxDate keys, format 2", "bench_othercmp",
        "BM_DiskCompare/0/2", "two `Load`s + the class's compare", "BM_LoadAndNative/0/2"),
    Row("Class keys", "`Cmp` of two NxInt64 keys, format 2", "bench_othercmp",
        "BM_DiskCompare/3/2", "two `Load`s + the class's compare", "BM_LoadAndNative/3/2"),
    Row("Class keys", "`Hash` of one NxNull_long key, format 2", "bench_nullkeys",
        "BM_Hash_NullLong/1", "`Hash` of one long key", "BM_Hash_Long/1"),
    Row("Class keys", "`EvalAndBound` of a wild NxDate", "bench_classkeys",
        "BM_EvalAndBound_WildDate", "`EvalAndBound` of a long", "BM_EvalAndBound_LongReference"),

    Row("Numbers", "`NxInt64` `+`, 1024 pairs", "bench_int64", "BM_NxInt64<Add>",
        "`int64_t`", "BM_Native<Add>"),
    Row("Numbers", "`NxInt64` `-`, 1024 pairs", "bench_int64", "BM_NxInt64<Subtract>",
        "`int64_t`", "BM_Native<Subtract>"),
    Row("Numbers", "`NxInt64` `*`, 1024 pairs", "bench_int64", "BM_NxInt64<Multiply>",
        "`int64_t`", "BM_Native<Multiply>"),
    Row("Numbers", "`NxInt64` `/`, 1024 pairs", "bench_int64", "BM_NxInt64<Divide>",
        "`int64_t`", "BM_Native<Divide>"),
    Row("Numbers", "`NxInt64` `%`, 1024 pairs", "bench_int64", "BM_NxInt64<Remainder>",
        "`int64_t`", "BM_Native<Remainder>"),
]

SORT_TARGET = 0.5  # nxtm sort within 2x of GNU sort
SORT_TARGET_LINES = 1000000  # from this many lines on
SORT_SEED = 16


# ---------------------------------------------------------------------------
# Benchmarks.

@dataclass
class Result:
    ns: float      # minimum CPU time per iteration
    allocs: Optional[float]


def run_program(path: str, names: List[str], repetitions: int, min_time: float
                ) -> Dict[str, Result]:
    pattern = "^(" + "|".join(re.escape(n) for n in sorted(set(names))) + ")$"
    cmd = [path, f"--benchmark_filter={pattern}",
           f"--benchmark_repetitions={repetitions}",
           "--benchmark_enable_random_interleaving=true",
           f"--benchmark_min_time={min_time}",
           "--benchmark_format=json"]
    out = subprocess.run(cmd, check=True, capture_output=True, text=True).stdout
    scale = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    results: Dict[str, Result] = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("run_type") != "iteration" or b.get("error_occurred"):
            continue
        name = b["run_name"]
        ns = b["cpu_time"] * scale[b["time_unit"]]
        allocs = b.get("allocs")
        old = results.get(name)
        if old is None or ns < old.ns:
            results[name] = Result(ns, allocs if old is None else old.allocs)
    return results


def listed(path: str) -> List[str]:
    out = subprocess.run([path, "--benchmark_list_tests=true"], check=True,
                         capture_output=True, text=True).stdout
    return out.split()


# ---------------------------------------------------------------------------
# Sorting: generated names, nxtm sort against GNU sort.

def name_list() -> List[str]:
    """The shared name list of the tests and benchmarks."""
    text = open(os.path.join(ROOT, "tests", "support", "names.h"), encoding="utf-8").read()
    body = text[text.index("kNames[] = {"):text.index("};")]
    return re.findall(r'"((?:[^"\\]|\\.)*)"', body)


def write_names(path: str, count: int, names: List[str]) -> None:
    """`count` lines of one to three names each, with a fixed seed."""
    rng = random.Random(SORT_SEED)
    with open(path, "w", encoding="utf-8") as f:
        for _ in range(count):
            parts = [rng.choice(names), rng.choice(names)]
            if rng.random() < 0.5:
                parts.append(rng.choice(names))
            f.write(" ".join(parts) + "\n")


def cpu_seconds(cmd: List[str], stdin_path: str, env: Dict[str, str]) -> float:
    with open(stdin_path, "rb") as stdin:
        p = subprocess.Popen(cmd, stdin=stdin, stdout=subprocess.DEVNULL, env=env)
        _, status, usage = os.wait4(p.pid, 0)
        p.returncode = os.waitstatus_to_exitcode(status)
    if p.returncode != 0:
        raise RuntimeError(f"{cmd[0]} failed with {p.returncode}")
    return usage.ru_utime + usage.ru_stime


def measure_sort(nxtm: str, sizes: List[int], repetitions: int, workdir: str):
    names = name_list()
    files = {}
    for n in sizes:
        files[n] = os.path.join(workdir, f"names-{n}.txt")
        write_names(files[n], n, names)
    env_c = dict(os.environ, LC_ALL="C")
    gnu = [shutil.which("sort") or "sort", "--parallel=1"]
    ours = [nxtm, "sort"]
    best = {(n, k): math.inf for n in sizes for k in ("ours", "gnu")}
    for rep in range(repetitions):
        for n in sizes:
            order = [("ours", ours), ("gnu", gnu)]
            if rep % 2 == 1:
                order.reverse()
            for key, cmd in order:
                t = cpu_seconds(cmd, files[n], env_c)
                best[(n, key)] = min(best[(n, key)], t)
    return best


# ---------------------------------------------------------------------------
# SQLite: the extension's pattern queries and sorting in a file database.

SQLITE_LINE = re.compile(r"^\s+(.+?)\s+(\d+) rows\s+([\d.]+) ms\s+([\d.]+)x$")
SQLITE_PATTERN = re.compile(r"^pattern (\S+) \(LIKE '([^']*)'\); indexed plan: (.*); LIKE plan: (.*)$")


def measure_sqlite(program: str, rows: int) -> List[str]:
    """Runs bench_sqlite on `rows` names and renders its figures as a table."""
    out = subprocess.run([program, str(rows)], check=True, capture_output=True,
                         text=True).stdout
    lines = ["| Query | Rows returned | Time | Time / the indexed query (sorts: / binary) |",
             "| --- | ---: | ---: | ---: |"]
    for line in out.splitlines():
        m = SQLITE_PATTERN.match(line)
        if m:
            pattern, like, plan, like_plan = m.groups()
            index = ("scans" if "t_key" not in plan else
                     "the whole key index" if pattern[0] in "*?" else "uses the key index")
            lines.append(f"| **`{pattern}`** ({index}), `LIKE '{like}'` "
                         f"({'NOCASE index' if 't_nocase' in like_plan else 'scan'}) | | | |")
            continue
        if line.startswith("sorting"):
            lines.append("| **sorting all names** | | | |")
            continue
        m = SQLITE_LINE.match(line)
        if m:
            what, n, ms, ratio = m.groups()
            t = float(ms)
            shown = f"{t:.2f}" if t < 10 else f"{t:.1f}" if t < 1000 else f"{t:,.0f}"
            lines.append(f"| {what} | {int(n):,} | {shown} ms | {float(ratio):.2f} |")
    return lines


# ---------------------------------------------------------------------------
# The table.

def fmt_time(ns: float) -> str:
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.3g} {unit}"
    return f"{ns:.3g} ns"


def fmt_allocs(value: Optional[float]) -> str:
    if value is None:
        return "?"
    return f"{value:.0f}" if abs(value - round(value)) < 0.005 else f"{value:.2f}"


def first_line(cmd: List[str]) -> str:
    try:
        return subprocess.run(cmd, capture_output=True, text=True).stdout.splitlines()[0]
    except (OSError, IndexError):
        return "?"


def describe(build: str) -> str:
    cpu = "?"
    try:
        for line in open("/proc/cpuinfo"):
            if line.startswith("model name"):
                cpu = line.split(":", 1)[1].strip()
                break
    except OSError:
        pass
    cache = {}
    try:
        for line in open(os.path.join(build, "CMakeCache.txt")):
            m = re.match(r"([A-Za-z_]+):[A-Z]+=(.*)", line)
            if m:
                cache[m.group(1)] = m.group(2)
    except OSError:
        pass
    compiler = first_line([cache.get("CMAKE_CXX_COMPILER", "c++"), "--version"])
    build_type = cache.get("CMAKE_BUILD_TYPE", "?")
    flags = cache.get(f"CMAKE_CXX_FLAGS_{build_type.upper()}", "")
    icu = first_line(["pkg-config", "--modversion", "icu-i18n"])
    date = datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d")
    return (f"Measured {date} on {cpu} ({os.cpu_count()} CPUs); compiler {compiler}, "
            f"{build_type} (`{flags.strip()}`); ICU {icu}; {first_line(['sort', '--version'])}.")


def main() -> int:
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("--build", default=os.path.join(ROOT, "build", "default"))
    ap.add_argument("--repetitions", type=int, default=9)
    ap.add_argument("--min-time", type=float, default=0.03,
                    help="seconds per repetition of a benchmark")
    ap.add_argument("--sizes", default="10000,100000,1000000")
    ap.add_argument("--sort-repetitions", type=int, default=3)
    ap.add_argument("--no-sort", action="store_true")
    ap.add_argument("--sqlite-rows", type=int, default=1000000)
    ap.add_argument("--no-sqlite", action="store_true")
    ap.add_argument("--only", default="", help="regular expression on group and operation")
    ap.add_argument("--readme", action="store_true",
                    help="replace the Performance section of README.md with the output")
    args = ap.parse_args()
    if args.readme and (args.only or args.no_sort or args.no_sqlite):
        ap.error("--readme wants the whole table: no --only, --no-sort or --no-sqlite")

    rows = [r for r in ROWS if re.search(args.only, f"{r.group} {r.operation}")]
    by_program: Dict[str, List[Row]] = {}
    for r in rows:
        by_program.setdefault(r.program, []).append(r)

    results: Dict[str, Dict[str, Result]] = {}
    for program, prows in by_program.items():
        path = os.path.join(args.build, "bench", program)
        if not os.path.exists(path):
            print(f"compare: {path} is not built; its rows are left out", file=sys.stderr)
            continue
        available = set(listed(path))
        wanted = [n for r in prows for n in (r.ours, r.ref_bench) if n in available]
        missing = {n for r in prows for n in (r.ours, r.ref_bench)} - available
        for n in sorted(missing):
            print(f"compare: {program} has no benchmark {n}", file=sys.stderr)
        print(f"compare: {program}: {len(set(wanted))} benchmarks", file=sys.stderr)
        results[program] = run_program(path, wanted, args.repetitions, args.min_time)

    lines = []
    lines.append("| What | Operation | Ours | Reference | Reference time | Ratio | Target "
                 "| Allocations |")
    lines.append("| --- | --- | ---: | --- | ---: | ---: | ---: | ---: |")
    missed = []
    for r in rows:
        res = results.get(r.program, {})
        a, b = res.get(r.ours), res.get(r.ref_bench)
        if a is None or b is None:
            continue
        ratio = b.ns / a.ns
        per = lambda v: None if v is None else v / r.per
        a = Result(a.ns / r.per, per(a.allocs))
        b = Result(b.ns / r.per, per(b.allocs))
        target = "" if r.target is None else f"≥ {r.target:.2f}"
        mark = ""
        if r.target is not None and ratio < r.target:
            mark = " ✗"
            missed.append(r)
        lines.append(f"| {r.group} | {r.operation} | {fmt_time(a.ns)} | {r.reference} | "
                     f"{fmt_time(b.ns)} | {ratio:.2f}{mark} | {target} | "
                     f"{fmt_allocs(a.allocs)} / {fmt_allocs(b.allocs)} |")

    nxtm = os.path.join(args.build, "cli", "nxtm")
    sort_note = ""
    if not args.no_sort and os.path.exists(nxtm) and (not args.only or
                                                        re.search(args.only, "Sort nxtm sort")):
        sizes = [int(s) for s in args.sizes.split(",") if s]
        print(f"compare: nxtm sort against GNU sort on {sizes}", file=sys.stderr)
        with tempfile.TemporaryDirectory() as work:
            best = measure_sort(nxtm, sizes, args.sort_repetitions, work)
        for n in sizes:
            ours, gnu = best[(n, "ours")] * 1e9, best[(n, "gnu")] * 1e9
            per = ours / (n * math.log2(n))
            ratio = gnu / ours
            # The target holds for a million lines; below that the start of
            # the program (loading three libraries) weighs in.
            target = SORT_TARGET if n >= SORT_TARGET_LINES else None
            mark = " ✗" if target is not None and ratio < target else ""
            shown = "" if target is None else f"≥ {target:.2f}"
            lines.append(f"| Sorting | `nxtm sort`, {n:,} generated names | {fmt_time(ours)} "
                         f"({per:.1f} ns per n log₂ n) | GNU `sort`, C locale, one thread | "
                         f"{fmt_time(gnu)} | {ratio:.2f}{mark} | {shown} | |")
        sort_note = (" `nxtm sort` and GNU sort read the same files of generated names (one to "
                     "three names of the shared list per line, fixed seed) and take turns, "
                     f"{args.sort_repetitions} times; their times are CPU time (user and "
                     "system) of the whole program.")

    sqlite_lines: List[str] = []
    sqlite_program = os.path.join(args.build, "sqlite", "bench_sqlite")
    if not args.no_sqlite and not args.only and os.path.exists(sqlite_program):
        print(f"compare: bench_sqlite on {args.sqlite_rows:,} names", file=sys.stderr)
        sqlite_lines = ["### SQLite", ""] + textwrap.wrap(
            f"`bench_sqlite {args.sqlite_rows}`, run by the same command: "
            f"{args.sqlite_rows:,} generated names (two names of the shared list joined by a "
            "space, fixed seed) in a file database, indexed on `nxtm_key(name, 'ci ai')` and "
            "on `name COLLATE NOCASE`. For each pattern: the indexed query of the SQLite "
            "section, the full scan with `nxtm_match`, and SQLite's nearest `LIKE` through "
            "its NOCASE index and as a full scan (`LIKE` folds ASCII case only and knows no "
            "accents, so it may return fewer rows). Times are the best of three runs of the "
            "indexed and `LIKE` queries and one run of the scans; wall time.", 78) + \
            [""] + measure_sqlite(sqlite_program, args.sqlite_rows)

    intro = ("Produced by `python3 bench/compare.py --readme` and not edited by hand. Each of "
             "our operations and its reference run in one benchmark program, interleaved in "
             f"random order, {args.repetitions} repetitions of at least {args.min_time} s "
             "each; the figures are the minimum CPU time per operation. Ratio is reference "
             "time over our time: above 1 we are faster; ✗ marks a ratio below its target. "
             "Allocations are heap allocations per operation, ours / the reference's, "
             "counted by the benchmark programs' own `malloc`." + sort_note)
    section = ["## Performance", ""] + textwrap.wrap(intro, 78) + [""] + \
        textwrap.wrap(describe(args.build), 78) + [""] + lines + \
        ([""] + sqlite_lines if sqlite_lines else [])
    text = "\n".join(section) + "\n"
    sys.stdout.write(text)
    if missed:
        print(f"compare: {len(missed)} rows below their target", file=sys.stderr)

    if args.readme:
        readme = os.path.join(ROOT, "README.md")
        old = open(readme, encoding="utf-8").read()
        start = old.index("## Performance\n")
        end = old.find("\n## ", start + 1)
        new = old[:start] + text + (old[end:] if end >= 0 else "")
        open(readme, "w", encoding="utf-8").write(new)
        print("compare: README.md updated", file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())
