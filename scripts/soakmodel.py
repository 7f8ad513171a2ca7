"""What the user has arranged, as it must be after each thing that the user does: favourites and exclusions."""


class Model:
    """The favourites in bunches and as one list, the exclusions, and what can be taken back."""

    DEPTH = 20  # Steps that the program keeps.

    def __init__(self, bunches):
        self.bunches = [list(bunch) for bunch in bunches]
        self.flat = sum(bunches, [])
        self.excluded = set()
        self.done, self.undone = [], []

    def state(self):
        return [list(bunch) for bunch in self.bunches], list(self.flat), set(self.excluded)

    def change(self, make):
        """Makes a change that can be taken back, unless it changes nothing."""
        before = self.state()
        make()
        if self.state() != before:
            self.done = (self.done + [before])[-self.DEPTH:]
            self.undone = []

    def step(self, back):
        """Undo or redo. True when there was something to take back."""
        source, target = (self.done, self.undone) if back else (self.undone, self.done)
        if source:
            target.append(self.state())
            self.bunches, self.flat, self.excluded = source.pop()

    def place(self, app):
        return next(((b, bunch.index(app)) for b, bunch in enumerate(self.bunches) if app in bunch), None)

    def move(self, app, bunch, index):
        """Into a bunch, before what stands at the index now; a bunch that this empties goes."""
        place, target = self.place(app), self.bunches[bunch]
        if place == (bunch, index):
            return
        if place and self.bunches[place[0]] == [app] and bunch == place[0] + 1:
            index = max(index - 1, 0)  # The bunch that takes the place of the emptied one counts like it.
        before = next((other for other in target[index:] if other != app), None)
        self.take(app)
        target.insert(target.index(before) if before else len(target), app)
        self.tidy(app)

    def move_alone(self, app, at):
        """Into a bunch of its own, before the bunch that stands there now."""
        self.take(app)
        self.bunches.insert(at, [app])
        self.tidy(app)

    def take(self, app):
        for bunch in self.bunches:
            if app in bunch:
                bunch.remove(app)

    def tidy(self, app):
        self.bunches = [bunch for bunch in self.bunches if bunch]
        if app not in self.flat:
            self.flat.append(app)

    def remove(self, app):
        self.take(app)
        self.flat.remove(app)
        self.bunches = [bunch for bunch in self.bunches if bunch]

    def move_farther(self, app, key, layout):
        """Shift with an arrow key: one cell on; at the outer edge across the bunches a bunch of its own."""
        cells = {(cell['row'], cell['column']): cell for cell in layout['cells']}
        own = next(cell for cell in layout['cells'] if cell['app'] == app)
        down, along = {'Left': (0, -1), 'Right': (0, 1), 'Up': (-1, 0), 'Down': (1, 0)}[key]
        target = cells.get((own['row'] + down, own['column'] + along))
        is_forward, bunch = down + along > 0, self.bunches[own['bunch']]
        if not target:
            is_outer_edge = bool(along) == layout['areSideBySide']
            is_there = len(bunch) == 1 and own['bunch'] == (len(self.bunches) - 1 if is_forward else 0)
            if is_outer_edge and not is_there:
                self.move_alone(app, len(self.bunches) if is_forward else 0)
        elif target['bunch'] != own['bunch']:
            self.move(app, target['bunch'], target['index'])
        elif target['index'] < own['index']:
            self.move(app, own['bunch'], target['index'])
        elif own['index'] + 1 < len(bunch):
            self.move(app, own['bunch'], target['index'] + 1)
