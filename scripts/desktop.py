"""A user's desktop on a virtual display, for scripts that press keys and look at windows from outside."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import time

# Program, package, and what else its command line needs. None of them may use a compositor of its own.
MANAGERS = {
    'openbox': ('openbox', 'openbox', ['--sm-disable']),
    'xfwm4': ('xfwm4', 'xfwm4', ['--compositor=off']),
    'kwin': ('kwin_x11', 'kwin-x11', []),
    'i3': ('i3', 'i3-wm', ['-c', '{home}/i3.conf']),
    'metacity': ('metacity', 'metacity', ['--sm-disable', '--no-composite']),
    'icewm': ('icewm', 'icewm', []),
    'awesome': ('awesome', 'awesome', []),
}
SCREEN = (1280, 800)
PATIENCE = 15  # Seconds; generous, since a busy machine is no fault.
WATCH = 1.0  # How long what must not happen is watched for.
SEAM = '#ff00ff'  # The colour of a window that must not shine through.


class Failure(Exception):
    pass


class NotApplicable(Exception):
    pass


class Desktop:
    """An X server with a bus, a window manager, perhaps a compositor, and a user with a few applications."""

    def __init__(self, manager, compositor, ortu):
        self.manager, self.ortu, self.processes, self.apps = manager, ortu, [], []
        self.home = tempfile.mkdtemp(prefix='ortu-desktop-')
        folders = {'XDG_DATA_HOME': 'data', 'XDG_CONFIG_HOME': 'config', 'XDG_CACHE_HOME': 'cache',
                   'XDG_STATE_HOME': 'state', 'XDG_RUNTIME_DIR': 'run'}
        for folder in [*folders.values(), 'data/applications']:
            os.mkdir(f'{self.home}/{folder}', 0o700)
        strange = ('WAYLAND_DISPLAY', 'SESSION_MANAGER', 'DESKTOP_STARTUP_ID', 'XDG_CURRENT_DESKTOP')
        self.env = {key: value for key, value in os.environ.items() if key not in strange}
        self.env.update({key: f'{self.home}/{folder}' for key, folder in folders.items()})
        self.env.update(HOME=self.home, LC_ALL='C.UTF-8', NO_AT_BRIDGE='1', XDG_SESSION_TYPE='x11',
                        GSETTINGS_BACKEND='memory', KWIN_COMPOSE='N', ORTU=ortu)
        with open(f'{self.home}/i3.conf', 'w', encoding='utf-8') as file:
            file.write('font pango:monospace 10\n')
        for name in ('Appa', 'Appb', 'Goner'):
            self.write_entry(name, 'xterm', name)
        self.write_entry('Changed', 'mousepad', 'Mousepad', 'org.xfce.mousepad')
        try:
            self.start(compositor)
        except BaseException:
            self.close()
            raise

    def entry(self, name):
        return f'{self.home}/data/applications/{name}.desktop'

    def write_entry(self, name, program, window_class, file=None):
        with open(self.entry(file or name.lower()), 'w', encoding='utf-8') as entry:
            entry.write(f'[Desktop Entry]\nType=Application\nName={name}\nExec={program}\n'
                        f'Icon=utilities-terminal\nStartupWMClass={window_class}\n')

    def start(self, compositor):
        size = '%dx%dx24' % SCREEN
        self.env['DISPLAY'] = ':' + self.tell_back(
            'Xvfb', '-displayfd', '{fd}', '-screen', '0', size, '-nolisten', 'tcp', '-noreset')
        self.env['DBUS_SESSION_BUS_ADDRESS'] = self.tell_back(
            'dbus-daemon', '--session', '--nofork', '--nopidfile', '--print-address={fd}')
        program, _, arguments = MANAGERS[self.manager]
        self.spawn(program, *[argument.format(home=self.home) for argument in arguments])
        self.wait('the window manager never answered', lambda: self.root('_NET_SUPPORTING_WM_CHECK')
                  and self.root('_NET_NUMBER_OF_DESKTOPS') and self.root('_NET_SUPPORTED'))
        if self.manager != 'i3' and int(self.root('_NET_NUMBER_OF_DESKTOPS')) < 2:
            self.run('xdotool', 'set_num_desktops', '2')
            self.wait('no second desktop', lambda: int(self.root('_NET_NUMBER_OF_DESKTOPS')) >= 2)
        if compositor != 'none':
            self.spawn(compositor)
            self.wait('no compositor', lambda: 'Window id' in self.run('xwininfo', '-name', compositor))
        self.run(self.ortu, '--defaults', 'searchDirectories', '[{"path":"~/data/applications"}]')
        self.run(self.ortu, '--defaults', 'showWelcomeWindow', 'no')

    def tell_back(self, *command):
        reading, writing = os.pipe()
        self.spawn(*[part.format(fd=writing) for part in command], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as pipe:
            return pipe.readline().strip()

    def spawn(self, *command, **options):
        with open(f'{self.home}/{os.path.basename(command[0])}.log', 'a', encoding='utf-8') as log:
            process = subprocess.Popen(command, env=self.env, cwd=self.home, stdout=log, stderr=log,
                                       stdin=subprocess.DEVNULL, start_new_session=True, **options)
        self.processes.append(process)
        return process

    def run(self, *command):
        return subprocess.run(command, env=self.env, cwd=self.home, stdout=subprocess.PIPE, timeout=60,
                              stderr=subprocess.DEVNULL, check=False).stdout.decode(errors='replace')

    def log(self, program):
        path = f'{self.home}/{os.path.basename(program)}.log'
        return open(path, encoding='utf-8', errors='replace').read() if os.path.exists(path) else ''

    def end(self, process):
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
        self.processes.remove(process)

    def close(self):
        for process in reversed(self.processes[:]):
            self.end(process)
        for _ in range(3):  # What the bus has started may still write.
            shutil.rmtree(self.home, ignore_errors=True)
            if not os.path.exists(self.home):
                break
            time.sleep(0.5)

    # Waiting: for what shall happen, and that something does not.

    def wait(self, complaint, condition, seconds=PATIENCE):
        end = time.monotonic() + seconds
        while not (answer := condition()):
            if time.monotonic() > end:
                raise Failure(complaint() if callable(complaint) else complaint)
            time.sleep(0.02)
        return answer

    def stays(self, complaint, condition, seconds=WATCH):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if not condition():
                raise Failure(complaint() if callable(complaint) else complaint)
            time.sleep(0.05)

    # What the windows are like.

    def prop(self, name, *where):
        value = re.search(r'(?:= |# )(.*)', self.run('xprop', *where, name))
        return value.group(1) if value else ''

    def root(self, name):
        return self.prop(name, '-root')

    def of(self, window, name):
        return self.prop(name, '-id', hex(window))

    def active(self):
        return int(self.root('_NET_ACTIVE_WINDOW').split(',')[0] or '0', 16)

    def stacking(self):
        return [int(number, 16) for number in re.findall(r'0x\w+', self.root('_NET_CLIENT_LIST_STACKING'))]

    def desktop(self):
        return int(self.root('_NET_CURRENT_DESKTOP') or -1)

    def is_minimised(self, window):
        return '_NET_WM_STATE_HIDDEN' in self.of(window, '_NET_WM_STATE')

    def clients(self, name):
        lines = [line.split() for line in self.run('wmctrl', '-lx').splitlines()]
        return [int(words[0], 16) for words in lines if words[2].lower().endswith('.' + name.lower())]

    def name(self, window):
        return self.of(window, 'WM_CLASS').split(',')[-1].strip(' "') if window else 'nothing'

    def geometry(self, window):
        """Left, top, width, height, and where the window lies in its frame."""
        text = self.run('xwininfo', '-id', hex(window))
        labels = ('Absolute upper-left X', 'Absolute upper-left Y', 'Width', 'Height',
                  'Relative upper-left X', 'Relative upper-left Y')
        return [int((re.search(label + r': *(-?\d+)', text) or [0, 0])[1]) for label in labels]

    def panel(self):
        """The panel's window while it is mapped, else 0. Its alerts are modal."""
        shown = [window for window in self.clients('ortu')
                 if 'MODAL' not in self.of(window, '_NET_WM_STATE')
                 and 'IsViewable' in self.run('xwininfo', '-id', hex(window))]
        return shown[0] if shown else 0

    def status(self):
        try:
            return json.loads(self.run(self.ortu, '--status', '--json'))
        except ValueError:
            return dict.fromkeys(('visible', 'active', 'filter', 'selected', 'hotKey'))

    def described(self):
        status = self.status()
        return ('panel %s, %s has the focus' % ('shown' if status['visible'] else 'hidden',
                                                self.name(self.active())))

    # What a user does.

    def key(self, *keys):
        self.run('xdotool', 'key', *keys)

    def click(self, x, y, button=1):
        self.run('xdotool', 'mousemove', str(x), str(y), 'click', str(button))

    def rest_pointer(self):
        self.run('xdotool', 'mousemove', '3', str(SCREEN[1] - 60))

    def go_to_desktop(self, number):
        if self.manager == 'i3':
            self.run('i3-msg', 'workspace', str(number + 1))
            self.wait('no such workspace', lambda: f'"num":{number + 1},' in re.sub(
                r'.*?(\{[^{}]*"visible":true)', r'\1', self.run('i3-msg', '-t', 'get_workspaces')))
        else:
            self.run('xdotool', 'set_desktop', str(number))
            self.wait('the desktop did not change', lambda: self.desktop() == number)

    def minimise(self, window):
        if self.manager == 'i3':
            raise NotApplicable('i3 does not minimise')
        self.run('xdotool', 'windowminimize', str(window))
        self.wait('a window was not minimised', lambda: self.is_minimised(window))

    def open(self, name, *command):
        """Starts a program, waits until its window has the focus, and gives that."""
        known = self.clients(name)
        command = command or ('xterm', '-class', name, '-name', name.lower(), '-geometry', '100x40+240+120')
        self.apps.append(self.spawn(*command))
        window = self.wait(f'{name} showed no window',
                           lambda: [w for w in self.clients(name) if w not in known])[0]
        self.wait(f'{name} did not get the focus', lambda: self.active() == window)
        return window

    def start_ortu(self, *settings):
        command = [self.ortu]
        for setting in ('showWindowAtLaunch=no', *settings):
            command += ['--set', setting]
        self.apps.append(self.spawn(*command))
        self.wait('Ortu did not start', lambda: (s := self.status())['hotKey'] and not s['scanning'])

    def summon(self, is_active=True):
        self.key('ctrl+Tab')
        return self.until_shown('after the hot key', is_active)

    def until_shown(self, when, is_active=True):
        def shown():
            status = self.status()
            panel = status['visible'] and self.panel()
            return panel if not is_active or status['active'] and self.active() == panel else 0
        return self.wait(lambda: f'{when}: {self.described()}', shown)

    def until_hidden(self, when):
        self.wait(lambda: f'{when}: {self.described()}',
                  lambda: not self.status()['visible'] and not self.panel())

    def drag_panel(self, panel, by=60):
        x, y, width, *_ = self.geometry(panel)
        self.run('xdotool', 'mousemove', str(x + width // 2), str(y + 10), 'mousedown', '1')
        for _ in range(4):
            self.run('xdotool', 'mousemove_relative', '--', str(by // 4), str(by // 4))
        self.run('xdotool', 'mouseup', '1')
        self.wait('the panel did not follow the pointer', lambda: self.geometry(panel)[0] - x >= by - 8)

    def is_above_all(self, panel):
        self.wait('the panel has the focus, but is behind another window',
                  lambda: self.stacking()[-1:] == [panel], 3)

    def point_at(self, panel, entry):
        """Moves the pointer over the panel until an application's icon is selected."""
        self.is_above_all(panel)
        left, top, width, height, *_ = self.geometry(panel)
        places = [(x, y) for y in range(top + 50, top + height - 34, 34)
                  for x in range(left + 34, left + width - 18, 34)]
        for x, y in places * 3:
            self.run('xdotool', 'mousemove', str(x - 1), str(y), 'mousemove', str(x), str(y))
            if (self.status()['selected'] or '').endswith(f'/{entry}.desktop'):
                return x, y
        raise Failure(f'no icon of {entry} on the panel')

    def has_focus(self, window, when):
        self.wait(lambda: f'{when}: {self.described()}', lambda: self.active() == window)

    def clear(self):
        """Back to where a round begins."""
        if self.status()['visible'] is not None:
            self.run(self.ortu, '--quit')
        for process in self.apps:
            if process in self.processes:
                self.end(process)
        self.apps = []
        self.wait('windows were left', lambda: not self.run('wmctrl', '-l').strip())
        self.go_to_desktop(0)
        self.rest_pointer()
