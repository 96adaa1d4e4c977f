"""Cis or trans: the Xaa-Pro bonds of a protein from its chemical shifts.

    import citrans

    result = citrans.predict("bmr16570.str")
    for proline in result:
        print(proline.author, proline.call, proline.p_cis_norm)

Nothing is printed and no file is written. What cannot be used raises `InputError` with the
program's own message. Calls may run in many threads at once: they release the interpreter's lock.
"""

from __future__ import annotations

import os
from typing import Any, Optional, Tuple, Union

from . import _core
from ._core import InputError, __version__
from ._results import ImportedTable, Offset, Proline, Result, Term

__all__ = [
    "ImportedTable",
    "InputError",
    "Offset",
    "Proline",
    "Result",
    "Term",
    "__version__",
    "import_table",
    "predict",
    "report_html",
]

Source = Union[str, bytes, bytearray, memoryview, "os.PathLike[str]"]
"""The name of a file, or what stands in one: see `predict`."""

Choosable = Union[str, int]
"""What a deposition or structure calls one of its parts."""


def predict(
    source: Source,
    *,
    structure: Optional[Source] = None,
    isotope: bool = False,
    rereference: bool = True,
    clip: bool = True,
    entity: Optional[Choosable] = None,
    shift_list: Optional[Choosable] = None,
    evidence: bool = False,
    copy: Optional[Choosable] = None,
    oxidised_by_cb: bool = False,
    chain: Optional[Choosable] = None,
    model: Optional[Choosable] = None,
    name: Optional[str] = None,
) -> Result:
    """Predicts the prolines of one protein.

    :param source: an NMR-STAR or NEF file or a table of the program's own, gzipped or not: its
        name, or its contents as bytes or as text of more than one line.
    :param structure: an mmCIF or PDB file to compare with, given likewise; it changes no
        likelihood.
    :param isotope: whether to correct for deuteration.
    :param rereference: whether to estimate the referencing of the shifts, and to take an offset off
        them where that is worth it (see `Result.offsets`).
    :param clip: whether to bound extreme secondary shifts.
    :param entity: the molecule to take, by ID or chain; the protein with the most shifts.
    :param shift_list: the shift list to take, by ID or name; the one with the most shifts.
    :param evidence: whether to list what each likelihood is made of (see `Proline.evidence`).
    :param copy: the copy of the molecule to take, where the assembly has several.
    :param oxidised_by_cb: whether cysteines with a CB above 34 ppm are oxidised.
    :param chain: the chain of the structure; the one that fits best.
    :param model: the model of the structure; the first.
    :param name: what to call contents in messages and in the report.
    :raises InputError: for input that cannot be used, with the program's own message.
    :raises OSError: for a file that cannot be read.
    """
    analysis = _core.analyse(
        _read(source, name or "shifts"),
        None if structure is None else _read(structure, "structure"),
        _choice(entity, shift_list, copy, oxidised_by_cb),
        _core.StructureChoice(chain=_text(chain), model=_text(model)),
        isotope=isotope,
        rereference=rereference,
        clip=clip,
    )
    return Result(analysis, evidence)


def import_table(
    source: Source,
    *,
    entity: Optional[Choosable] = None,
    shift_list: Optional[Choosable] = None,
    copy: Optional[Choosable] = None,
    oxidised_by_cb: bool = False,
    name: Optional[str] = None,
) -> ImportedTable:
    """Makes the program's input table of an NMR-STAR or NEF file, as citrans-import does.

    The arguments are those of `predict`. Raises `InputError` for input that cannot be used, and
    OSError for a file that cannot be read.
    """
    deposition = _read(source, name or "shifts")
    return ImportedTable(
        *_core.import_file(deposition, _choice(entity, shift_list, copy, oxidised_by_cb))
    )


def report_html(source: Union[Result, Source], **settings: Any) -> str:
    """The page of citrans-report on a `Result`, or on what `predict` makes of its arguments."""
    if not isinstance(source, Result):
        return predict(source, **settings).report_html()
    if settings:
        raise TypeError(f"the result is made already: {next(iter(settings))} is for predict")
    return source.report_html()


def _read(source: Source, name: str) -> Tuple[str, bytes]:
    """What to call a source, without folders, and its contents."""
    if isinstance(source, (bytes, bytearray, memoryview)):
        return _readable(name), bytes(source)
    if isinstance(source, str) and "\n" in source:
        return _readable(name), source.encode("utf-8", "surrogateescape")
    path = os.fsdecode(source)
    with open(path, "rb") as file:
        return _readable(os.path.basename(path)), file.read()


def _readable(name: object) -> str:
    """A name that is no UTF-8 shows question marks in messages."""
    return str(name).encode(errors="replace").decode()


def _choice(
    entity: Optional[Choosable],
    shift_list: Optional[Choosable],
    copy: Optional[Choosable],
    oxidised_by_cb: bool,
) -> _core.Choice:
    return _core.Choice(_text(entity), _text(shift_list), _text(copy), oxidised_by_cb)


def _text(choice: Optional[Choosable]) -> str:
    return "" if choice is None else str(choice)
