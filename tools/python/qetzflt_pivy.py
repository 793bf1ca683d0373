"""Reading OpenFlight (.flt) databases in Python with pivy, through libSoFLTFileKit.so.

pivy's extension module loads Coin with its symbols private to it (RTLD_LOCAL); Coin then
cannot use the importer kit it loads for a .flt file, and SoDB.readAll returns None. This
module makes Coin's symbols global first, loads the kit from the folder it is told (or
leaves Coin to find it on the library path), then reads files with SoDB.readAll:

    import qetzflt_pivy
    root = qetzflt_pivy.read("demo.flt")             # an SoSeparator holding the kit, or None
    print(qetzflt_pivy.count_shapes(root))

Run as a program, it reads one file and prints its shape and triangle counts:

    python3 qetzflt_pivy.py [--kit-dir DIR] FILE.flt
"""
import ctypes
import ctypes.util
import os
import sys

_KIT = "libSoFLTFileKit.so"


def _load_coin_globally():
    # Before pivy loads Coin (or promoting the copy it loaded): the kit and Coin must share
    # one set of Coin's symbols.
    name = ctypes.util.find_library("Coin") or "libCoin.so"
    ctypes.CDLL(name, mode=ctypes.RTLD_GLOBAL)


_load_coin_globally()
from pivy import coin  # noqa: E402  (after Coin is global)


def load_kit(kit_dir=None):
    """Loads the kit from kit_dir, else from $QETZFLT_KIT_DIR; with neither, Coin looks for it
    on the library path when it first meets a .flt file (after `sudo ldconfig` of an install)."""
    kit_dir = kit_dir or os.environ.get("QETZFLT_KIT_DIR")
    if kit_dir:
        ctypes.CDLL(os.path.join(kit_dir, _KIT), mode=ctypes.RTLD_GLOBAL)


def read(path, kit_dir=None):
    """The scene of the file at path as SoDB.readAll gives it (a .flt database under an
    SoFLTFileKit), or None when it cannot be read."""
    load_kit(kit_dir)
    coin.SoDB.init()
    coin.SoNodeKit.init()
    source = coin.SoInput()
    if not source.openFile(path):
        return None
    return coin.SoDB.readAll(source)


def count_shapes(root):
    """The shapes a traversal meets under root, inside the kit's parts as well."""
    count = [0]

    def seen(_data, _action, _node):
        count[0] += 1
        return coin.SoCallbackAction.CONTINUE

    action = coin.SoCallbackAction()
    action.addPreCallback(coin.SoShape.getClassTypeId(), seen, None)
    action.apply(root)
    return count[0]


def main(argv):
    args = argv[1:]
    kit_dir = None
    if len(args) == 3 and args[0] == "--kit-dir":
        kit_dir, args = args[1], args[2:]
    if len(args) != 1:
        sys.stderr.write("usage: qetzflt_pivy.py [--kit-dir DIR] FILE.flt\n")
        return 2
    root = read(args[0], kit_dir)
    if root is None:
        sys.stderr.write("qetzflt_pivy: cannot read %s\n" % args[0])
        return 1
    root.ref()
    triangles = coin.SoGetPrimitiveCountAction()
    triangles.apply(root)
    print("shapes %d triangles %d" % (count_shapes(root), triangles.getTriangleCount()))
    root.unref()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
