#!/usr/bin/env python3
"""What a run of CITRANS must print and write, derived a second time: derive.py ARGUMENTS

Written from the formulas and the layouts, for the options -in -star -first -last -ref -iso -offset
-noclip -check -verb; shares nothing with the program. Class F is single precision: a sum, product,
quotient or root taken in double precision and then rounded is the single-precision one.
"""
import math
import struct
import sys

ATOMS = ["N", "HA", "C", "CA", "CB", "HN"]
BANNER = "<banner>\n"
ORIGIN = ["Reference: <citation and version>"]
ONE = dict(zip("ALA CYS cys ASP GLU PHE GLY HIS his ILE LYS LEU MET ASN PRO GLN ARG SER THR VAL TRP "
               "TYR".split(), "ACcDEFGHhIKLMNPQRSTVWY"))


class F(float):
    def __new__(cls, value):
        return super().__new__(cls, struct.unpack("f", struct.pack("f", float(value)))[0])

    def __add__(self, other): return F(float(self) + other)
    def __sub__(self, other): return F(float(self) - other)
    def __mul__(self, other): return F(float(self) * other)
    def __truediv__(self, other): return F(float(self) / other) if other else F("nan")


def stored(value):
    return "%.6g" % F(value)


class Table:
    def __init__(self, name):
        self.name, self.remarks, self.data, self.vars, self.pieces, self.rows = name, [], [], [], [], []
        for line in open(name):
            words = line.split() or [""]
            keyword = words[0].upper()
            if keyword == "REMARK":
                self.remarks.append(line.rstrip("\n")[7:])
            elif keyword == "DATA":
                self.data.append(" ".join(words[1:]))
            elif keyword == "VARS":
                self.vars = words[1:]
            elif keyword == "FORMAT":
                self.pieces = ["%" + piece for piece in line.rstrip("\n").split("%")[1:]]
            elif len(words) == len(self.vars):
                self.rows.append(dict(zip(self.vars, words)))

    def find(self, **cells):
        return next((row for row in self.rows
                     if all(row.get(key, "") == cell for key, cell in cells.items())), None)

    def shift(self, name, column, without):
        row = self.find(RESNAME=name)
        return without if row is None else F(row.get(column, 0))

    def save(self, name):
        with open(name, "w") as out:
            out.writelines(f"REMARK {remark}\n" for remark in self.remarks)
            out.write("\n")
            for item in self.data:
                key, _, text = item.partition(" ")
                if key == "SEQUENCE":
                    out.writelines(f"DATA SEQUENCE {text[at:at + 55]}\n"
                                   for at in range(0, len(text) + 1, 55))
                else:
                    out.write(f"DATA {item}\n")
            out.write("\nVARS   " + "".join(name + " " for name in self.vars) + "\nFORMAT " +
                      "".join(self.pieces) + "\n\n")
            for row in self.rows:
                for name, piece in zip(self.vars, self.pieces):
                    kind = {"s": str, "d": int, "f": float}[piece.strip()[-1]]
                    out.write(piece % kind(row.get(name, "" if kind is str else 0)))
                out.write("\n")


def average(values):
    total = F(0)
    for value in values:
        total = total + value
    return total / len(values)


def fit(points):
    """Intercept and error; the first point counts in the means of x and y only."""
    x, y = [p[0] for p in points], [p[1] for p in points]
    n, mean_x, mean_y = F(len(x)), average(x), average(y)
    slope = (n * average([a * b for a, b in points[1:]]) - n * mean_y * mean_x) / \
            (n * average([a * a for a in x[1:]]) - mean_x * n * mean_x)
    intercept = mean_y - mean_x * slope
    squares = F(0)
    for a, b in points[1:]:
        residual = b - (slope * a + intercept)
        squares = squares + residual * residual
    return intercept, F(F(math.sqrt(squares / (n - 2))) / math.sqrt(n))


def offset_of(points, negative, positive):
    """Offset, error and number of points."""
    below, above = [p for p in points if p[0] < 0], [p for p in points if p[0] >= 0]
    n, p, both = F(len(below)), F(len(above)), F(len(points))
    if n >= 10:
        b, err_n = fit(below)
        off_n = F(float(b) - negative)
    if p >= 10:
        b, err_p = fit(above)
        off_p = F(float(b) - positive)
    if n >= 10 and p >= 10:
        variance = (err_p * err_p * p * p + err_n * err_n * n * n) / (both * both)
        return (off_p * p + off_n * n) / both, F(math.sqrt(variance)), len(points)
    return (*((off_p, err_p) if p >= 10 else (off_n, err_n) if n >= 10 else (F(0), F(0))), len(points))


def omega(name, residue):
    """Degrees from the arc tangent of the products of the three bonds; 9999 without an atom."""
    atoms = {}
    for line in open(name):
        if line.startswith(("TER", "END")):
            break
        if line.startswith("ATOM"):
            atoms[int(line[22:26]), line[11:16].strip()] = [float(line[i:i + 8]) for i in (30, 38, 46)]
    keys = [(residue - 1, "CA"), (residue - 1, "C"), (residue, "N"), (residue, "CA")]
    if not all(key in atoms for key in keys):
        return F(9999), any(key[0] == residue for key in atoms)
    p = [atoms[key] for key in keys]
    u, v, w = ([b - a for a, b in zip(p[i], p[i + 1])] for i in range(3))
    dot = lambda a, b: sum(s * t for s, t in zip(a, b))
    cross = lambda a, b: [a[i - 2] * b[i - 1] - a[i - 1] * b[i - 2] for i in range(3)]
    return F(math.degrees(math.atan2(math.sqrt(dot(v, v)) * dot(u, cross(v, w)),
                                     dot(cross(u, v), cross(v, w))))), True


def predict(options, shifts, sequence, residues, last, missing, cg, clip, folder):
    statistics = {int(row["index"]): {key: F(row[key]) for key in row}
                  for row in Table(folder + "Pro.cs.tab").rows}
    neighbours = {row.pop("resname"): {key: F(row[key]) for key in row}
                  for row in Table(folder + "Pro.seq.tab").rows}
    summary, reference = Table("/dev/null"), options.get("ref")
    summary.vars = ("RESID RESNAME_R1 RESNAME_R2 RESNAME_R3 CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS "
                    "P_CIS_NORM").split()
    summary.pieces = ["%3d "] + ["%1s "] * 3 + ["%2d "] * 3 + ["%8.3f "] * 3
    summary.remarks = ["CITRANS Protein Proline Omega Angle Prediction ",
                       " Summary table for " + options.get("in", "None")]
    explained = ["", " RESID is the residue number of Pro", "",
                 " RESNAME_R1 is the residue prior to Pro", "",
                 " RESNAME_R3 is the residue next to Pro", "",
                 " CS_CNT is the number of chemical shifts", "",
                 " CG_SHIFT is the Pro CG chemical shift", "",
                 " P_CIS is the likelihood of Pro to be in cis form, ",
                 " calculated by Eq. 5 of the reference", "",
                 " P_CIS_NORM is the normalized likelihood of Pro to be ",
                 " in cis form, calculated by Eq. 6 of the reference", ""]
    if reference:
        summary.vars += ["RESNAME_REF", "OMEGA_REF"]
        summary.pieces += ["%4s ", "%8.3f"]
        summary.remarks += [" Reference PDB " + reference]
        explained += [" RESNAME_REF is the residue type in the reference PDB", "",
                      " OMEGA_REF is the omega angle from the reference PDB, defined",
                      " for RESID = i as torsion CA(i-1) C'(i-1) N(i) CA(i)", ""]
    summary.remarks += explained + ORIGIN

    for r in (r for r in residues if sequence.get(r) == "P"):
        around = (r - 1, r, r + 1)
        if sum(missing.get(i, 0) > 3 for i in around) > 1 or r < 2 or r >= last:
            continue
        likelihood = {}
        for form in ("cis", "trans"):
            def gaussian(product, value, index):
                z = (value - statistics[index]["avg_" + form]) / statistics[index]["std_" + form]
                return product * math.exp(-0.5 * (z * z))
            product = F(1)
            for k, i in enumerate(around):
                for a, atom in enumerate(ATOMS):
                    row = shifts.find(RESID=str(i), ATOMNAME=atom)
                    value = F(row["SHIFT"] if row else 0)
                    value = value if "noclip" in options else clip(i, value, atom)
                    product = gaussian(product, F(stored(value)), 6 * k + a) if value <= 99 else product
            product = neighbours[sequence[r - 1]][form + "_prev"] * \
                neighbours[sequence[r + 1]][form + "_next"] * product
            likelihood[form] = gaussian(product, cg[r], 18) if cg[r] < 999 else product
        p = likelihood["cis"] / (likelihood["cis"] + likelihood["trans"])
        row = {"RESID": r, "CG_SHIFT": stored(cg[r]), "P_CIS": stored(p),
               "P_CIS_NORM": stored(p / (p + F(19) * (F(1) - p)))}
        for k, i in enumerate(around, 1):
            row.update({f"RESNAME_R{k}": sequence[i], f"CS_CNT{k}": 6 - missing[i]})
        if reference:
            angle, present = omega(reference, r)
            row.update(RESNAME_REF="P" if present else "X", OMEGA_REF=stored(angle))
        summary.rows.append(row)
    print("\nPredicting Pro Xaa-Pro Conformation ...\n")
    if "verb" in options:
        print("  #RES1 RES2 RES3 P_CIS  P_CIS_NORM" + (" OMEGA" if reference else "") + "\n")
        for row in summary.rows:
            r = row["RESID"]
            print("   %1s%-3d %1s%-3d %1s%-3d %-6.3f %-6.3f" % (
                row["RESNAME_R1"], r - 1, "P", r, row["RESNAME_R3"], r + 1, float(row["P_CIS"]),
                float(row["P_CIS_NORM"])) + (
                    "     %-8.3f" % float(row["OMEGA_REF"]) if reference else ""))
    summary.save("pred.tab")
    print("\n Running time: T seconds")


def main():
    words = " ".join(["", *sys.argv[1:]]).split(" -")[1:]
    options = {word.split()[0]: word.partition(" ")[2] or word for word in words}
    folder = options.get("tabDir", "./tab") + "/"
    name = options.get("star", options.get("in"))
    sys.stderr.write(BANNER)
    print("Analyzing Chemical Shifts ")
    source = Table(name)
    rc, own, prev, nxt, limits, iso = (Table(folder + file) for file in (
        "randcoil.tab", "rcadj.tab", "rcprev.tab", "rcnext.tab", "sslimit.tab", "isoadj.tab"))
    letters = "".join(item.split(" ", 1)[1] for item in source.data
                      if item.upper().startswith("SEQUENCE "))
    sequence = dict(enumerate(letters.replace(" ", ""), 1))
    last = len(sequence)
    for row in source.rows:
        code, header = row["RESNAME"], sequence.get(int(row["RESID"]))
        code = ONE.get(code, "?") if len(code) == 3 else code
        if sequence.setdefault(int(row["RESID"]), code) != code:
            sys.stderr.write(f"WARNING: Unmatched name for residue {row['RESID']} between header "
                             f"({header}) and chemical shift table ({code})\n")
    numbers = [int(row["RESID"]) for row in source.rows]
    low, high = min(numbers), max(numbers) + (max(numbers) < last)
    first, final = sorted(min(max(int(options.get(key, default)), low), high)
                          for key, default in (("first", 1), ("last", 9999)))

    rows, missing, cg = [], {0: 6, last + 1: 6}, {}
    for i in range(1, last + 1):
        missing[i] = 0
        observed = lambda atom: source.find(RESID=str(i), ATOMNAME=atom)
        for atom in ATOMS:
            adjust = rc.shift(sequence[i], atom, F(9999)) + own.shift(sequence[i], atom, F(0)) + \
                prev.shift(sequence.get(i - 1, ""), atom, F(0)) + \
                nxt.shift(sequence.get(i + 1, ""), atom, F(0))
            if "iso" in options and atom in ("CA", "CB"):
                adjust = adjust + iso.shift(sequence[i], atom, F(0))
            found = observed(atom) or (observed("H") if atom == "HN" else None)
            row = dict(found or {"RESID": str(i), "RESNAME": sequence[i], "ATOMNAME": atom})
            value = float(found["SHIFT"]) if found else None
            if sequence[i] == "G" and atom == "HA":
                row["ATOMNAME"] = "HA"
                protons = [float(p["SHIFT"]) for p in map(observed, ("HA2", "HA3")) if p]
                value = sum(protons) / len(protons) if protons else None
            missing[i] += value is None
            row["SHIFT"] = "9999"
            if value is not None:
                row["SHIFT"] = stored(value - adjust) if adjust < 999 else "9999"
                row.update(CS_OBS=stored(value), CS_ADJ=stored(adjust))
            if sequence[i] == "P" and atom in ("HN", "N"):
                row["SHIFT"] = "9999"
            rows.append(row)
        cg[i] = F(observed("CG")["SHIFT"] if observed("CG") else 9999)
    table = Table(name)
    table.rows = rows
    if "iso" in options:
        table.remarks.append(" Deuterium Isotope Shifts Correction Applied for 13Ca and 13Cb Nuclei")

    def clip(i, value, atom):
        floor = limits.shift(sequence.get(i, ""), atom + "_MIN", F(0))
        ceiling = limits.shift(sequence.get(i, ""), atom + "_MAX", F(0))
        return value if value >= 999 else floor if value < floor else min(value, ceiling)

    print("\nChecking for Chemical Shift Outliers ...")
    by_residue = {}
    for row in rows:
        atom = "HN" if row["ATOMNAME"] == "H" else row["ATOMNAME"]
        i, value = int(row["RESID"]), F(row["SHIFT"])
        limit = clip(i, value, atom)
        if limit != value:
            mark = abs(value) > F(3 if atom == "HA" else 2) * abs(limit)
            print("  %3d %s %3s Secondary Shift: %8.3f    Limit: %8.3f%s" % (
                i, sequence[i], atom, float(row["SHIFT"]), limit, " !" if mark else ""))
        by_residue.setdefault(row["RESID"], {})[atom] = value
    points = {"CA": [], "HA": [], "C": []}
    for key in sorted(by_residue):
        shifts = by_residue[key]
        if shifts["CA"] < 999 and shifts["CB"] < 999 and sequence[int(key)] not in "PCc":
            for atom in points:
                if shifts[atom] < 999:
                    points[atom].append((shifts["CA"] - shifts["CB"], shifts[atom]))
    print("\nChecking Chemical Shift Referencing ...")
    offsets = {}
    for atom, nucleus, line, negative, positive in (
            ("CA", "CA", "CA/CB: %6.3f +/- %6.3fppm Size: %3d", 0.094, 0.459),
            ("HA", "HA", "HA:\n     %6.3f +/- %6.3fppm size: %3d", 0.089, -0.008),
            ("C", "C'", "C':    %6.3f +/- %6.3fppm Size: %3d", -0.272, 0.226)):
        offset, error, count = offset_of(points[atom], negative, positive)
        if 0 < count and error == 0:
            sys.stderr.write(f"  Not enough {nucleus} shifts to check {line.partition(':')[0]} chemical "
                             "shift referencing offset ...\n")
        if abs(offset) > F(5) * error > 0 and count > 10:
            print(" Estimated Referencing Offset for " + line % (offset, error, count))
            offsets.update({"CA": offset, "CB": offset} if atom == "CA" else {atom: offset})
    if "offset" in options:
        for row in rows:
            offset = offsets.get(row["ATOMNAME"])
            if offset is not None and float(row["SHIFT"]) < 999:
                row["SHIFT"] = stored(float(row["SHIFT"]) - offset)
                if row["RESNAME"] in ("P", "PRO") and 0 != cg[int(row["RESID"])] < 999:
                    cg[int(row["RESID"])] = cg[int(row["RESID"])] - offset
        for atom, nuclei in (("CA", "13Ca and 13Cb"), ("HA", "1Ha"), ("C", "13C'")):
            if atom in offsets:
                table.remarks.append(" %6.3f ppm referencing offset applied for %s chemical shifts" % (
                    offsets[atom], nuclei))
                sys.stderr.write(table.remarks[-1] + "\n")
    table.rows = [row for row in rows if float(row["SHIFT"]) < 999]
    table.vars, table.pieces = table.vars + ["CS_OBS", "CS_ADJ"], table.pieces + ["%9.3f", "%9.3f"]
    table.remarks += ["CITRANS Protein Secondary Chemical Shift Table for " + name, "",
                      " SHIFT is secondary chemical shift", "", " CS_OBS is the original chemical shift",
                      "", " CS_ADJ is the adjustment used to calculate SHIFT", "", *ORIGIN]
    table.save("predAdjCS.tab")
    if "check" in options:
        sys.exit(255)
    table.rows = rows
    predict(options, table, sequence, range(first, final + 1), last, missing, cg, clip, folder)


if __name__ == "__main__":
    main()
