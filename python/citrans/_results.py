"""What a prediction says, as plain Python data."""

from __future__ import annotations

import base64
import html
from dataclasses import asdict, dataclass, fields
from typing import (
    TYPE_CHECKING, Any, Dict, Iterator, List, Optional, Sequence, Tuple, Union, overload,
)

from . import _core

if TYPE_CHECKING:
    import pandas


# What `help` shows of a class is its docstring: the fields are described there.


@dataclass(frozen=True)
class Term:
    """One contribution to the likelihood of one proline.

    The terms of a proline add up to ln(p_cis / (1 - p_cis)).

    kind: ``"shift"``, ``"cg"`` (the proline's CG) or ``"neighbour"`` (a residue type).
    place: 1 for the residue before the proline, 2 for the proline, 3 for the residue after it.
    residue: number of that residue in the table, from 1.
    author: number of that residue as its authors count; the table's where they do not say.
    atom: ``"N"``, ``"HA"``, ``"C"``, ``"CA"``, ``"CB"``, ``"HN"`` or ``"CG"``; for a neighbour
        ``"type"``.
    state: ``"used"``, ``"clipped"`` (bounded by the limits), ``"missing"``, ``"unused"`` (N and HN
        of a proline) or ``"read as 0"`` (an amide proton that the table calls H).
    shift: secondary shift in ppm, for ``"cg"`` the observed one; None when missing or for a type.
    used: the same after bounding, ppm.
    cis: mean of the cis prolines, ppm; for a neighbour the frequency of its type, 0 to 1.
    cis_sd: standard deviation of the cis prolines, ppm; None for a neighbour.
    trans: mean of the trans prolines, ppm; for a neighbour the frequency of its type, 0 to 1.
    trans_sd: standard deviation of the trans prolines, ppm; None for a neighbour.
    ln_ratio: natural logarithm of the factor for cis over that for trans: above 0 it speaks for
        cis; 0 when missing, infinite or nan where there are no statistics.
    """

    kind: str
    place: int
    residue: int
    author: str
    atom: str
    state: str
    shift: Optional[float]
    used: Optional[float]
    cis: float
    cis_sd: Optional[float]
    trans: float
    trans_sd: Optional[float]
    ln_ratio: float


@dataclass(frozen=True)
class Proline:
    """One predicted proline.

    residue: number in the table, from 1.
    author: number as the authors count, which may hold a letter; the table's where they do not say.
    before: one-letter name of the residue before.
    after: one-letter name of the residue after.
    shift_counts: backbone shifts of the residue before, the proline and the residue after, 0 to 6
        each.
    cg: shift of CG in ppm, as used; None when it is not assigned.
    p_cis: likelihood of cis, 0 to 1, with cis and trans as frequent beforehand; nan when nothing
        could be compared.
    p_cis_norm: the same with one proline in twenty cis beforehand: above 0.5 cis is likelier.
    call: ``"cis"``, ``"trans"`` or ``"undecided"``; ``"none"`` where `p_cis` is nan.
    omega: angle of the bond in the structure, degrees, -180 to 180; None without one.
    evidence: what the likelihood is made of, as `Term`; None unless asked for.
    """

    residue: int
    author: str
    before: str
    after: str
    shift_counts: Tuple[int, int, int]
    cg: Optional[float]
    p_cis: float
    p_cis_norm: float
    call: str
    omega: Optional[float]
    evidence: Optional[Tuple[Term, ...]] = None


@dataclass(frozen=True)
class Offset:
    """What the shifts say about the referencing of one group of nuclei.

    offset: ppm too high.
    error: standard error of it, ppm.
    points: residues that it was estimated from.
    applied: whether it was taken off before predicting.
    """

    offset: float
    error: float
    points: int
    applied: bool


@dataclass(frozen=True)
class ImportedTable:
    """A deposition as the program's input table.

    table: text of the table; `predict` takes it.
    map: tab-separated: table number, author number and residue name, with a header line.
    notes: what was decided, one line each.
    warnings: what may be wrong, one line each.
    """

    table: str
    map: str
    notes: Tuple[str, ...]
    warnings: Tuple[str, ...]

    def __str__(self) -> str:
        return self.table


class _SavedTexts:
    """The texts of a result that has been pickled."""

    def __init__(self, texts: Dict[str, str]) -> None:
        self._texts = texts

    def text(self, kind: str) -> str:
        return self._texts[kind]


class Result(Sequence[Proline]):
    """The predicted prolines of one protein, in the order of the sequence.

    A sequence of `Proline`; a proline that could not be predicted is not in it. Texts are made when
    they are asked for. It can be pickled, and shared between threads.

    not_predicted: why each of the other prolines was not predicted, by its number in the table.
    offsets: what the shifts say about their referencing, by nuclei: ``"CA/CB"``, ``"HA"`` and
        ``"C'"``; empty without `rereference`.
    sequence: one-letter names, residue 1 first; ``c`` is an oxidised cysteine.
    notes: what was decided on the way to the prediction, one line each.
    warnings: what may be wrong with the input, one line each.
    """

    def __init__(self, analysis: _core.Analysis, evidence: bool = False) -> None:
        self._texts: Union[_core.Analysis, _SavedTexts] = analysis
        self._prolines = tuple(map(_proline, analysis.prolines(evidence)))
        self.not_predicted: Dict[int, str] = analysis.not_predicted()
        self.offsets: Dict[str, Offset] = {
            nuclei: Offset(*values) for nuclei, values in analysis.offsets().items()
        }
        self.sequence: str = analysis.sequence()
        self.notes: Tuple[str, ...] = analysis.notes()
        self.warnings: Tuple[str, ...] = analysis.warnings()

    @overload
    def __getitem__(self, index: int) -> Proline: ...
    @overload
    def __getitem__(self, index: slice) -> Tuple[Proline, ...]: ...
    def __getitem__(self, index: Union[int, slice]) -> Union[Proline, Tuple[Proline, ...]]:
        return self._prolines[index]

    def __len__(self) -> int:
        return len(self._prolines)

    def __iter__(self) -> Iterator[Proline]:
        return iter(self._prolines)

    def __repr__(self) -> str:
        calls = [proline.call for proline in self]
        counts = ", ".join(
            f"{calls.count(call)} {call}" for call in ("cis", "undecided", "trans") if call in calls
        )
        counts = counts or "no proline predicted"
        return f"<citrans.Result of {len(self.sequence)} residues: {counts}>"

    def __getstate__(self) -> Dict[str, Any]:
        texts = {kind: self._texts.text(kind) for kind in _TEXTS}
        return {**self.__dict__, "_texts": _SavedTexts(texts)}

    def to_dicts(self) -> List[Dict[str, Any]]:
        """A flat dict for each proline, with the fields of `Proline`.

        ``shift_counts`` becomes ``count_before``, ``count_proline`` and ``count_after``;
        ``evidence``, a list of dicts, is there only when it was asked for.
        """
        return [_flat(proline) for proline in self]

    def to_frame(self, evidence: bool = False) -> pandas.DataFrame:
        """A pandas data frame with a row for each proline; missing numbers are nan.

        With ``evidence`` it has a row for each `Term` instead, after the columns ``proline`` and
        ``proline_author``; ValueError when these were not asked for in `predict`. Needs pandas:
        ImportError without it.
        """
        if evidence and any(proline.evidence is None for proline in self):
            raise ValueError("no evidence: ask for it with predict(..., evidence=True)")
        import pandas

        if evidence:
            rows = [
                {"proline": proline.residue, "proline_author": proline.author, **asdict(term)}
                for proline in self
                for term in proline.evidence or ()
            ]
            return pandas.DataFrame(rows, columns=list(_TERM_COLUMNS)).astype(_TERM_COLUMNS)
        return pandas.DataFrame(self.to_dicts(), columns=list(_PROLINE_COLUMNS)).astype(
            _PROLINE_COLUMNS
        )

    @property
    def table(self) -> str:
        """The program's input table, with corrected referencing where offsets were applied."""
        return self._texts.text("table")

    @property
    def map(self) -> str:
        """Table number, author number and residue name, tab-separated; empty without an import."""
        return self._texts.text("map")

    @property
    def summary(self) -> str:
        """The program's summary table, a row for each proline."""
        return self._texts.text("summary")

    @property
    def secondary_shifts(self) -> str:
        """The program's table of secondary shifts in ppm, a row for each residue and atom."""
        return self._texts.text("secondary")

    def report_html(self) -> str:
        """The page of citrans-report: one HTML document that needs nothing else."""
        return self._texts.text("html")

    def to_json(self) -> str:
        """The JSON of citrans-report: everything that its page shows."""
        return self._texts.text("json")

    def _repr_html_(self) -> str:
        """The prolines as a table, and the picture of what their calls rest on."""
        head = "".join(f"<th>{title}</th>" for title in _HTML_TITLES)
        body = "".join(f"<tr>{''.join(map(_cell, _html_row(proline)))}</tr>" for proline in self)
        warnings = "".join(f"<li>{html.escape(warning)}</li>" for warning in self.warnings)
        # As an image: the styles of a drawing within a page would colour the notebook too.
        picture = base64.b64encode(self._texts.text("svg").encode()).decode()
        return (
            f"<table><thead><tr>{head}</tr></thead><tbody>{body}</tbody></table>"
            + (f"<ul>{warnings}</ul>" if warnings else "")
            + f'<img alt="Evidence on {len(self)} prolines" '
            + f'src="data:image/svg+xml;base64,{picture}">'
        )


_TEXTS = ("table", "map", "summary", "secondary", "html", "json", "svg")
# The types of a frame's columns, also where there is no row or no value to show them.
_PROLINE_COLUMNS = {
    "residue": "int64", "author": "object", "before": "object", "after": "object",
    "count_before": "int64", "count_proline": "int64", "count_after": "int64",
    "cg": "float64", "p_cis": "float64", "p_cis_norm": "float64", "call": "object",
    "omega": "float64",
}
_TERM_COLUMNS = {"proline": "int64", "proline_author": "object"}
_TERM_COLUMNS.update(
    (field.name, {"int": "int64", "str": "object"}.get(str(field.type), "float64"))
    for field in fields(Term)
)
_HTML_TITLES = ("Proline", "Between", "Shifts", "CG, ppm", "P_CIS_NORM", "Call", "Omega, degrees")


def _proline(values: Tuple[Any, ...]) -> Proline:
    *plain, terms = values
    plain.append(None if terms is None else tuple(Term(*term) for term in terms))
    return Proline(*plain)


def _flat(proline: Proline) -> Dict[str, Any]:
    row = asdict(proline)
    counts = dict(zip(("count_before", "count_proline", "count_after"), row["shift_counts"]))
    flat = {name: row.get(name, counts.get(name)) for name in _PROLINE_COLUMNS}
    if proline.evidence is not None:
        flat["evidence"] = [asdict(term) for term in proline.evidence]
    return flat


def _html_row(proline: Proline) -> Tuple[str, ...]:
    return (
        "Pro" + proline.author,
        f"{proline.before} and {proline.after}",
        " + ".join(map(str, proline.shift_counts)),
        "" if proline.cg is None else f"{proline.cg:.2f}",
        f"{proline.p_cis_norm:.3f}",
        proline.call,
        "" if proline.omega is None else f"{proline.omega:.1f}",
    )


def _cell(text: str) -> str:
    return f"<td>{html.escape(text)}</td>"
