#!/usr/bin/env python3
"""Validates what each command of havhost writes as JSON.

  check_json.py HAVHOST SCHEMA
"""
import copy
import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

# Every type, as a value, an array and NULL; every kind of class; links.
MODEL = r'''
Qualifier Abstract : boolean = false, Scope(class, association, indication), Flavor(Restricted);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
Qualifier Description : string = null, Scope(any), Flavor(EnableOverride, ToSubclass);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Values : string[], Scope(property, method, parameter), Flavor(EnableOverride, ToSubclass);
[Abstract, Description("Anything.")] class T_Element { [Key] string Name; };
class T_Types : T_Element {
  boolean B; uint8 U8; sint8 S8; uint16 U16; sint16 S16; uint32 U32; sint32 S32; uint64 U64;
  sint64 S64; real32 R32; real64 R64; char16 C; datetime D;
  boolean Bs[]; uint64 U64s[]; real64 R64s[]; string Ss[]; datetime Ds[];
  [Values{"Off", "On"}] uint8 State = 1;
  [Description("Starts it anew.")] uint32 Reset([Values{"Soft", "Hard"}] uint16 Mode, T_Element REF By);
};
class T_Part : T_Element { };
[Indication] class T_Alarm { [Key] string Text; };
[Association] class T_Link { [Key] T_Types REF Antecedent; [Key] T_Part REF Dependent; };
instance of T_Types as $Full {
  Name = "full \"\\ \x1b"; B = true; U8 = 255; S8 = -128; U16 = 65535; S16 = -32768;
  U32 = 4294967295; S32 = -2147483648; U64 = 18446744073709551615; S64 = -9223372036854775808;
  R32 = 0.5; R64 = -1.0e300; C = 'c'; D = "20240301101500.000000+060";
  Bs = {true, false}; U64s = {0, 18446744073709551615}; R64s = {0.1}; Ss = {"", "a"};
  Ds = {"00000001000000.000000:000"};
};
instance of T_Types { Name = "null"; State = null; };
instance of T_Part as $Part { Name = "part"; };
instance of T_Link { Antecedent = $Full; Dependent = $Part; };
'''
PART = 'T_Part.Name="part"'
COMMANDS = {
    "inventory": ["inventory"],
    "instances": ["instances", "T_Element"],
    "no instances": ["instances", "T_Alarm"],
    "get": ["get", PART],
    "classes": ["classes"],
    "show": ["show", "T_Types"],
    "show an association": ["show", "T_Link"],
    "references": ["references", PART],
    "references of a class": ["references", "T_Part"],
    "associators": ["associators", PART],
    "associators of a class": ["associators", "T_Part"],
}


class Check:
    """Writes each case in two lines as GoogleTest does, so that it is counted."""

    def __init__(self, validator):
        self.validator = validator
        self.failed = 0

    def case(self, name, problem):
        print(f"[ RUN      ] Json.{name}")
        if problem:
            self.failed += 1
            print(problem)
        print(f"[ {'FAILED' if problem else 'OK':>8} ] Json.{name} (0 ms)")

    def accepts(self, what, document):
        errors = [error for branch in self.validator.iter_errors(document)
                  for error in (branch.context or [branch])]
        name = "Of" + "".join(word.capitalize() for word in what.split()) + "IsAsDescribed"
        self.case(name, "\n".join(f"{list(error.absolute_path)}: {error.message[:300]}"
                                  for error in errors))

    def refuses(self, name, document):
        self.case("SchemaRefuses" + name,
                  "it does not" if self.validator.is_valid(document) else "")


def written(havhost, arguments, status=0):
    run = subprocess.run([havhost, *arguments, "--format", "json"], stdout=subprocess.PIPE)
    if run.returncode != status:
        raise SystemExit(f"{arguments} ended with {run.returncode}")
    return json.loads(run.stdout)


def check_refusals(check, inventory):
    """What is not as described does not pass unseen."""
    def changed(change):
        document = copy.deepcopy(inventory)
        change(document)
        return document
    first = lambda document: document["instances"][0]
    check.refuses("AnotherVersion", changed(lambda d: d.update(version=2)))
    check.refuses("NoVersion", changed(lambda d: d.pop("version")))
    check.refuses("AnUnknownField", changed(lambda d: d.update(more=1)))
    check.refuses("AnUnknownFieldOfAnInstance", changed(lambda d: first(d).update(more=1)))
    check.refuses("AMissingParent", changed(lambda d: first(d).pop("parent")))
    check.refuses("AnUnknownType", changed(
        lambda d: first(d)["properties"]["Name"].update(type="text")))
    check.refuses("ADisplayTextThatIsNone", changed(
        lambda d: first(d)["properties"]["Name"].update(display=None)))


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    havhost, schema = arguments[0], json.loads(pathlib.Path(arguments[1]).read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    check = Check(jsonschema.Draft202012Validator(schema))
    with tempfile.TemporaryDirectory(prefix="havhost-json-") as folder:
        model = pathlib.Path(folder) / "model.mof"
        model.write_text(MODEL)
        for what, command in COMMANDS.items():
            check.accepts(what, written(havhost, [*command, "--mof", str(model)]))
        wrong = pathlib.Path(folder) / "wrong.mof"
        wrong.write_text("class T_Keyless { };")
        check.accepts("check", written(havhost, ["check", str(model)]))
        check.accepts("check with findings", written(havhost, ["check", str(wrong)], 1))
        check.accepts("load", written(havhost, ["load", str(model)]))
        later = pathlib.Path(folder) / "later.mof"
        later.write_text(MODEL.replace("S8 = -128", "S8 = 127").replace('"part"', '"other"'))
        check.accepts("differences", written(havhost, ["diff", str(model), str(later)], status=1))
        check.accepts("this machine", written(havhost, ["inventory"]))
        check_refusals(check, written(havhost, ["inventory", "--mof", str(model)]))
    return 1 if check.failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
