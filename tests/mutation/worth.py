"""Which tests notice a mutant that others do not, from what ./dev mutate --all-tests has found out."""

from collections import Counter


def noticed_by(entry):
    """The tests that notice a mutant: (program, test)."""
    return {(step['by'], test) for step in entry['everyone'] for test in step['tests']}


class Worth:
    """Of each test: how many mutants it notices, and how many of them it notices alone."""

    def __init__(self, tests, mutants):
        self.noticed = Counter(test for mutant in mutants for test in mutant)
        self.alone = Counter(test for mutant in mutants if len(mutant) == 1 for test in mutant)
        self.tests, self.mutants = tests, mutants

    def redundant(self):
        """Tests that notice mutants, all of which a test of the same program notices that notices still more."""
        of_test = {}
        for number, mutant in enumerate(self.mutants):
            for test in mutant:
                of_test.setdefault(test, set()).add(number)
        return {test: better for test, numbers in of_test.items()
                if (better := min((other for other in set.intersection(*(self.mutants[number] for number in numbers))
                                   if other[0] == test[0] and of_test[other] > numbers), default=None))}

    def summary(self):
        silent = len(self.tests - set(self.noticed))
        return (f'{len(self.mutants)} mutants and {len(self.tests)} tests: {len(self.alone)} tests notice one alone, '
                f'{len(set(self.noticed) - set(self.alone))} only such as others notice, too, {silent} none of them')

    def lines(self):
        """A test for each line that notices mutants, but none alone; with a test that notices all of them and more."""
        better = self.redundant()
        for test in sorted(set(self.noticed) - set(self.alone)):
            rest = f', as {better[test][1]} does and more' if test in better else ''
            yield f'{test[0]}/{test[1]}: {self.noticed[test]}{rest}'
