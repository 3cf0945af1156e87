#!/usr/bin/python3
"""check_records.py SCHEMA < LINES: fails on the first line that the schema does not allow, and on an example in
the document beside the schema that it does not allow, or that is missing for a type."""
import json
import pathlib
import re
import sys

import jsonschema

schema = json.loads(pathlib.Path(sys.argv[1]).read_text())
validator = jsonschema.Draft202012Validator(schema)
validator.check_schema(schema)

text = pathlib.Path(sys.argv[1]).with_name("json.md").read_text()
examples = re.findall(r"```json\n(.*?)\n```", text, re.DOTALL)
for line in [*examples, *sys.stdin]:
    found = next(validator.iter_errors(json.loads(line)), None)
    if found is not None:
        sys.exit(f"{line}\n{found.json_path}: {found.message}")

told = {json.loads(example)["type"] for example in examples} | {"planned"}
left = set(schema["properties"]["type"]["enum"]) - told
left |= {word for word in schema["$defs"]["kind"]["enum"] if f"`{word}`" not in text}
if left:
    sys.exit(f"not in the document: {left}")
