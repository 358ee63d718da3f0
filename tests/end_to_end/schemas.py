"""The formats' contract, held against what the program writes by a validator not made here."""

import json
import pathlib

import jsonschema

DIRECTORY = pathlib.Path(__file__).parents[2] / "docs" / "schema"


def validate(report, kind):
    """Checks a report file against docs/schema/KIND.schema.json; returns its content."""
    schema = json.loads((DIRECTORY / f"{kind}.schema.json").read_text())
    content = json.loads(pathlib.Path(report).read_bytes())
    jsonschema.Draft202012Validator.check_schema(schema)
    jsonschema.Draft202012Validator(schema).validate(content)
    return content
