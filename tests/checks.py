"""What tests that are no cases say when something is wrong."""


class Failure(Exception):
    """Something is not as it must be."""


def check(holds, text):
    if not holds:
        raise Failure(text)
