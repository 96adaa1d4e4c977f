"""What comes out for other programs: pages, frames, JSON."""

import dataclasses
import html.parser
import json
import pydoc
import re

import citrans
import pytest

HOSTILE = "<script>alert('1')</script>&\"x"


class Elements(html.parser.HTMLParser):
    """Names of the elements of a piece of HTML, and its text."""

    def __init__(self, source):
        super().__init__()
        self.names, self.text = [], ""
        self.feed(source)

    def handle_starttag(self, tag, attrs):
        self.names.append(tag)

    def handle_data(self, data):
        self.text += data


def test_page_is_that_of_the_program(examples, program, tmp_path):
    """From the same files, the module's page and JSON are those of citrans-report."""
    result = citrans.predict(examples / "ybbr.tab", structure=examples / "ybbr_2kpu.pdb")
    (tmp_path / "ybbr.pred.tab").write_text(result.summary)
    (tmp_path / "ybbr.predAdjCS.tab").write_text(result.secondary_shifts)
    program("citrans-report", "ybbr.pred.tab", "-o", "page.html", "--json", "data.json")
    assert result.report_html() == (tmp_path / "page.html").read_text()
    assert citrans.report_html(result) == result.report_html()
    assert result.to_json() == (tmp_path / "data.json").read_text()
    assert len(json.loads(result.to_json())["prolines"]) == 8


def test_notebook_shows_every_proline(examples):
    result = citrans.predict(examples / "ybbr.tab")
    page = Elements(result._repr_html_())
    assert page.names.count("tr") == 1 + len(result)
    assert page.names.count("img") == 1 and "style" not in page.names
    assert all("Pro" + proline.author in page.text for proline in result)


def test_text_of_a_deposition_is_no_markup(examples):
    table = (examples / "ybbr.tab").read_text().replace("REMARK ", "REMARK " + HOSTILE, 1)
    result = citrans.predict(table, name=HOSTILE)
    for page in (result._repr_html_(), result.report_html()):
        assert "script" not in Elements(page).names


def test_rows_and_frames(examples):
    result = citrans.predict(examples / "ybbr.tab", evidence=True)
    flat = result.to_dicts()
    assert [row["author"] for row in flat] == [proline.author for proline in result]
    assert "evidence" not in citrans.predict(examples / "ybbr.tab").to_dicts()[0]
    assert json.loads(json.dumps(flat)) == flat
    pandas = pytest.importorskip("pandas")
    frame = result.to_frame()
    assert list(frame.columns) == [name for name in flat[0] if name != "evidence"]
    assert frame.loc[frame.call == "cis", "author"].tolist() == ["82"]
    terms = result.to_frame(evidence=True)
    assert len(terms) == sum(len(proline.evidence) for proline in result)
    assert terms.groupby("proline").ln_ratio.sum().idxmax() == 82
    # Frames of many proteins can be joined: columns without a row or a value have their types too.
    silent = citrans.predict(examples / "plastocyanin.tab", evidence=True)
    assert silent.to_frame().empty and (silent.to_frame().dtypes == frame.dtypes).all()
    assert (silent.to_frame(evidence=True).dtypes == terms.dtypes).all()
    assert frame.omega.abs().isna().all()
    assert isinstance(frame, pandas.DataFrame)


@pytest.mark.parametrize("kind", [citrans.Proline, citrans.Term, citrans.Offset,
                                  citrans.ImportedTable])
def test_help_describes_every_field(kind):
    shown = pydoc.render_doc(kind, renderer=pydoc.plaintext)
    for field in dataclasses.fields(kind):
        assert re.search(rf"^ \|\s+{field.name}: \S+ \S+", shown, re.MULTILINE), field.name
