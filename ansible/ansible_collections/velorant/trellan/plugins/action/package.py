# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import hashlib
import io
import os
import tarfile

from ansible.errors import AnsibleActionFail
from ansible_collections.velorant.trellan.plugins.plugin_utils.controller import ControllerAction


class ActionModule(ControllerAction):
    """Packs an archive's folder into one file whose content, and so whose name, depends on the archive's files alone."""

    ARGUMENT_SPEC = dict(archive=dict(type="path", required=True), folder=dict(type="path", required=True))

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        args = self.arguments()
        archive, folder = args["archive"], args["folder"]
        if not os.path.isdir(archive):
            raise AnsibleActionFail("the archive %s is no folder" % archive)
        try:
            files, others = content_of(archive)
            name = digest(archive, files)
            path = os.path.join(folder, name + ".tar")
            if not os.path.exists(path):
                os.makedirs(folder, exist_ok=True)
                pack(archive, files, name, path)
                result["changed"] = True
        except OSError as error:
            raise AnsibleActionFail("the archive %s cannot be packed: %s" % (archive, error))
        if others:
            result["warnings"] = ["left out, since they are neither files nor folders that end: %s" % ", ".join(others)]
        result.update(path=path, name=name)
        return result


def content_of(archive):
    """The files below a folder by their paths in it, in order, and likewise what is left out: pipes, links to nothing, and
    links to a folder that they are in. Other links are followed."""
    files, others = [], []
    gather(archive, [os.path.realpath(archive)], files, others)
    return [sorted(os.path.relpath(path, archive) for path in paths) for paths in (files, others)]


def gather(folder, way, files, others):
    """Adds what is below a folder; WAY are the folders, without links, that lead to it from the archive's."""
    for name in os.listdir(folder):
        path = os.path.join(folder, name)
        place = os.path.realpath(path)
        if os.path.isfile(path):
            files.append(path)
        elif not os.path.isdir(path) or any((above + os.sep).startswith(place + os.sep) for above in way):
            others.append(path)
        else:
            gather(path, way + [place], files, others)


def digest(archive, files):
    """What tells one archive from another: a digest of its files' paths and contents."""
    whole = hashlib.sha256()
    for name in files:
        content = hashlib.sha256()
        with open(os.path.join(archive, name), "rb") as file:
            for block in iter(lambda: file.read(1 << 20), b""):
                content.update(block)
        whole.update(os.fsencode(name) + b"\0" + content.digest())
    return whole.hexdigest()[:32]


def pack(archive, files, name, path):
    """The files lie in a folder of this name. An empty file behind them tells that all are there."""
    with tarfile.open(path + ".part", "w", dereference=True) as package:
        for file in files:
            package.add(os.path.join(archive, file), os.path.join(name, file), filter=anonymous)
        package.addfile(anonymous(tarfile.TarInfo(name + ".complete")), io.BytesIO())
    os.replace(path + ".part", path)


def anonymous(member):
    member.uid = member.gid = member.mtime = 0
    member.uname = member.gname = ""
    member.mode = 0o644
    return member
