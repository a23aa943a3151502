"""Which folder may include which: docs/architecture.md as a table."""

SIBLINGS = {
    'coresupport': ('idl',),
    'objectbase': ('coresupport',),
    'appruntime': ('coresupport',),
    'valuetreelib': ('objectbase', 'appruntime'),
    'orbconnection': ('valuetreelib',),
}

# The folders directly below each; what these reach is reached as well.
BELOW = {
    'idl': (),
    **SIBLINGS,
    'objectmodel': tuple(SIBLINGS),
    'common': tuple(SIBLINGS),
    'korvebase': ('objectmodel', 'common'),
    'connectionmanagement': ('korvebase',),
    'programs': (),
    'apps': ('connectionmanagement', 'programs'),
    'installation': ('connectionmanagement', 'programs'),
    'docs': ('connectionmanagement',),
    'tests': ('apps', 'installation'),
    'benchmarks': ('tests',),
    'fuzz': ('tests',),
}


def is_ours(place):
    return place in BELOW


def allowed(place, target):
    """Whether a file of `place` may include one of `target`."""
    return place == target or any(allowed(below, target) for below in BELOW.get(place, ()))


def place_of(path):
    """The folder that stands for a file: the first of its path, or the second below platform/."""
    parts = path.split('/')
    return parts[1] if parts[0] == 'platform' and len(parts) > 2 else parts[0]
