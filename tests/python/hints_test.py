"""The type hints say what the package has: the same names, parameters and properties."""

import ast
import inspect
import pathlib
import unittest

import nivora
import nivora.cluster

PACKAGE = pathlib.Path(nivora.__file__).parent


def hinted(name):
    """The definitions of a file of hints by name."""
    tree = ast.parse((PACKAGE / name).read_text(encoding="utf-8"))
    return {node.name: node for node in tree.body if isinstance(node, (ast.FunctionDef, ast.ClassDef))}


def is_property(node):
    return any(isinstance(each, ast.Name) and each.id == "property" for each in node.decorator_list)


def parameters_of_hint(node):
    """Name, kind and whether there is a default, of each parameter."""
    arguments = node.args
    plain = arguments.posonlyargs + arguments.args
    first_default = len(plain) - len(arguments.defaults)
    found = [(each.arg, "positional", place >= first_default) for place, each in enumerate(plain)]
    found += [
        (each.arg, "keyword", default is not None)
        for each, default in zip(arguments.kwonlyargs, arguments.kw_defaults, strict=True)
    ]
    return found


def parameters_of(function):
    return [
        (
            each.name,
            "keyword" if each.kind is inspect.Parameter.KEYWORD_ONLY else "positional",
            each.default is not inspect.Parameter.empty,
        )
        for each in inspect.signature(function).parameters.values()
    ]


def public(names):
    return {name for name in names if not name.startswith("_")}


class HintsTest(unittest.TestCase):
    def compare_class(self, kind, node):
        """Methods and properties of a class of the package."""
        members = {each.name: each for each in node.body if isinstance(each, ast.FunctionDef)}
        own = {}
        for base in reversed(kind.__mro__):
            if base.__module__.startswith("nivora"):
                own.update(vars(base))
        self.assertEqual(
            public(members), public(name for name, value in own.items() if callable(value) or isinstance(value, property))
        )
        for name, hint in members.items():
            value = inspect.getattr_static(kind, name)
            self.assertEqual(is_property(hint), isinstance(value, property), (kind, name))
            if not is_property(hint):
                self.assertEqual(parameters_of_hint(hint), parameters_of(value), (kind, name))

    def test_the_package(self):
        hints = hinted("__init__.pyi")
        self.assertEqual(set(hints), set(nivora.__all__))
        for name, node in hints.items():
            value = getattr(nivora, name)
            self.assertEqual(isinstance(node, ast.ClassDef), inspect.isclass(value), name)
            if isinstance(node, ast.FunctionDef):
                self.assertEqual(parameters_of_hint(node), parameters_of(value), name)
            elif issubclass(value, Exception):
                base = node.bases[0].id
                self.assertTrue(issubclass(value, getattr(__builtins__, base)), name)
            else:
                self.compare_class(value, node)

    def test_the_cluster(self):
        hints = hinted("cluster.pyi")
        own = {
            name
            for name, value in vars(nivora.cluster).items()
            if getattr(value, "__module__", None) == "nivora.cluster" and not name.startswith("_")
        }
        self.assertEqual(set(hints), own)
        for name, node in hints.items():
            if isinstance(node, ast.FunctionDef):
                self.assertEqual(parameters_of_hint(node), parameters_of(getattr(nivora.cluster, name)), name)

    def test_everything_public_has_a_docstring(self):
        for name in nivora.__all__:
            value = getattr(nivora, name)
            if not (inspect.isclass(value) and value.__module__ == "nivora._core"):
                self.assertTrue(value.__doc__, name)
            if inspect.isclass(value):
                for member, part in vars(value).items():
                    if not member.startswith("_") and (callable(part) or isinstance(part, property)):
                        self.assertTrue(part.__doc__, (name, member))

    def test_the_package_says_that_it_is_typed(self):
        self.assertTrue((PACKAGE / "py.typed").is_file())


if __name__ == "__main__":
    unittest.main()
