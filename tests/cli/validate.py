"""validate.py SCHEMA: standard input holds one JSON value that the schema takes; else says why not and ends with 1."""

import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
# As bytes, so that what is no UTF-8 is a fault.
value = json.loads(sys.stdin.buffer.read().decode("utf-8"))
faults = list(jsonschema.Draft202012Validator(schema).iter_errors(value))
for fault in faults:
    print(fault.json_path, fault.message)
sys.exit(1 if faults else 0)
