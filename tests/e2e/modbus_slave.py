"""A Modbus RTU slave on pymodbus: the far end of a line whose protocol is not ours.

modbus_slave.py DEVICE ADDRESS REGISTERS, numbers hexadecimal. Takes the same lines on standard
input as modbus_slave_main.cpp, which tells of them.
"""

import asyncio
import logging
import sys

from pymodbus.datastore import ModbusSequentialDataBlock, ModbusServerContext, ModbusSlaveContext
from pymodbus.register_read_message import ReadHoldingRegistersRequest, ReadInputRegistersRequest
from pymodbus.register_write_message import (
    WriteMultipleRegistersRequest,
    WriteSingleRegisterRequest,
)
from pymodbus.server import StartAsyncSerialServer
from pymodbus.transaction import ModbusRtuFramer

REQUESTS = (
    ReadHoldingRegistersRequest,
    ReadInputRegistersRequest,
    WriteSingleRegisterRequest,
    WriteMultipleRegistersRequest,
)


def refusable(request):
    """The class of a request that the slave refuses where it was told to."""

    class Refusable(request):
        def execute(self, context):
            code = context.refusals.get(self.address)
            return self.doException(code) if code else super().execute(context)

    return Refusable


def obey(slave, command):
    verb, *words = command.split()
    numbers = [int(word, 16) for word in words]
    if verb == "set":
        function, first, *values = numbers
        slave.setValues(function, first, values)
        return "ok"
    if verb == "get":
        return " ".join(f"{value:04X}" for value in slave.getValues(*numbers))
    if verb == "refuse":
        first, code = numbers
        slave.refusals[first] = code
        return "ok"
    return "unknown: " + command


async def serve(device, address, registers):
    slave = ModbusSlaveContext(
        hr=ModbusSequentialDataBlock(0, [0] * registers),
        ir=ModbusSequentialDataBlock(0, [0] * registers),
        zero_mode=True,
    )
    slave.refusals = {}
    server = await StartAsyncSerialServer(
        context=ModbusServerContext(slaves={address: slave}, single=False),
        framer=ModbusRtuFramer,
        port=device,
        baudrate=19200,
        parity="N",
        defer_start=True,
    )
    for request in REQUESTS:
        server.decoder.register(refusable(request))
    await server.start()
    if server.transport is None:
        return 1
    print("ready", flush=True)
    commands = asyncio.StreamReader()
    await asyncio.get_running_loop().connect_read_pipe(
        lambda: asyncio.StreamReaderProtocol(commands), sys.stdin
    )
    async for line in commands:
        print(obey(slave, line.decode()), flush=True)
    await server.shutdown()
    return 0


if __name__ == "__main__":
    # Each refusal would be an error in its log.
    logging.getLogger("pymodbus").setLevel(logging.CRITICAL)
    sys.exit(asyncio.run(serve(sys.argv[1], int(sys.argv[2], 16), int(sys.argv[3], 16))))
